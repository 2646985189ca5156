#include "Window.h"

#include <brindle/arrange/LayoutTree.h>
#include <brindle/arrange/PixelRect.h>
#include <brindle/arrange/TreeSizes.h>
#include <brindle/config/Text.h>
#include <brindle/filesupport/CommonDirs.h>
#include <brindle/glue/GLib.h>
#include <brindle/threads/AsyncEventLoopAdaptor.h>
#include <gtk/gtk.h>

namespace offload {

namespace {

using config::Text;

/// The fields that are preferences.
constexpr char const* kFields[] = {"source", "destination", "start", "counting", "language"};

filesupport::File Resource(UTF16String const& inName) {
    return {filesupport::commondirs::ResourcesDir(), inName};
}

/// The property of a widget that has its value.
char const* ValueOf(GtkWidget* inWidget) {
    return GTK_IS_ENTRY(inWidget) ? "text" : GTK_IS_COMBO_BOX(inWidget) ? "active-id" : "label";
}

/// The leaf is as large as the widget wants to be, and grows where the layout says so.
void Bind(GtkWidget* inWidget, arrange::FunctionLeaf& ioLeaf) {
    ioLeaf.SetSizes([=, &ioLeaf] {
        GtkRequisition size;
        gtk_widget_get_preferred_size(inWidget, nullptr, &size);
        arrange::Extent const width(size.width), height(size.height);
        return arrange::LeafSizes{
            ioLeaf.HorizontallyExpandable() ? arrange::Growing(width.best) : width,
            ioLeaf.VerticallyExpandable() ? arrange::Growing(height.best) : height};
    });
    ioLeaf.SetPlace([=](geom::RectT<float> const& inRect) {
        auto const [x, y, width, height] = arrange::PixelRect(inRect);
        GtkAllocation place{x, y, width, height};
        gtk_widget_size_allocate(inWidget, &place);
    });
}

/// The widgets are those of window.ui, and their places those of the leaves of layout.xml that have
/// their names. Their labels are localisation literals.
class Window {
public:
    Window(proplist::PropList& ioPreferences, proplist::TableLocalizer& ioTexts, Executor inPool)
        : mPreferences(ioPreferences), mTexts(ioTexts), mPool(std::move(inPool)) {
        for (std::string const& name : mTree.LeafNames()) {
            Bind(Widget(name), mTree.Leaf(name));
            if (GTK_IS_LABEL(Widget(name)) || GTK_IS_BUTTON(Widget(name))) {
                mLiterals[name] = Get(name);
            }
        }
        mTree.Leaf("status").SetHeightForWidth([this](float inWidth) {
            int best = 0;
            gtk_widget_get_preferred_height_for_width(Widget("status"), int(inWidth), nullptr,
                                                      &best);
            return float(best);
        });
        Set("language", Text("$$$/offload/Language=en"));
        for (char const* const name : kFields) {
            Set(name, mPreferences.Get(name, Get(name)));
        }
        g_object_set(Widget("window"), "default-width", mPreferences.Get("width", 600),
                     "default-height", mPreferences.Get("height", 440), nullptr);
        Translate();
        Connect<&Window::Update>("changed", {"source", "destination", "start", "counting"});
        Connect<&Window::Calculate>("activate", {"start"});
        Connect<&Window::ChooseSource>("clicked", {"choose-source"});
        Connect<&Window::ChooseDestination>("clicked", {"choose-destination"});
        Connect<&Window::Start>("clicked", {"offload"});
        Connect<&Window::Cancel>("clicked", {"cancel"});
        Connect<&Window::Translate>("changed", {"language"});
        Connect<&Window::Arrange>("size-allocate", {"layout"});
        g_signal_connect(Widget("window"), "destroy", gtk_main_quit, nullptr);
        gtk_widget_show(Widget("window"));
    }

private:
    GtkWidget* Widget(std::string const& inName) const {
        return GTK_WIDGET(gtk_builder_get_object(mBuilder, inName.c_str()));
    }
    std::string Get(std::string const& inName) const {
        g_autofree char* value = nullptr;
        g_object_get(Widget(inName), ValueOf(Widget(inName)), &value, nullptr);
        return value == nullptr ? "" : value;
    }
    void Set(std::string const& inName, config::ReplacementValue const& inValue) {
        g_object_set(Widget(inName), ValueOf(Widget(inName)),
                     utility::ToStd(config::TextOf(inValue)).c_str(), nullptr);
    }
    template <void (Window::*Function)()>
    void Connect(char const* inSignal, std::initializer_list<char const*> inWidgets) {
        GCallback const call = G_CALLBACK(+[](Window* ioWindow) { (ioWindow->*Function)(); });
        for (char const* const name : inWidgets) {
            g_signal_connect_swapped(Widget(name), inSignal, call, this);
        }
    }

    void Arrange() {
        int const width = gtk_widget_get_allocated_width(Widget("layout"));
        int const height = gtk_widget_get_allocated_height(Widget("layout"));
        mPreferences.Set("width", width);
        mPreferences.Set("height", height);
        mTree.Leaf("status").MarkInvalid(); // its text may have changed
        mTree.Root().Arrange({0, 0, float(width), float(height)});
    }

    void Translate() {
        mTexts.SetLanguages({Get("language")});
        for (auto const& [name, literal] : mLiterals) {
            Set(name, Text(literal.c_str()));
        }
        mTree.Root().InvalidateAll();
        auto const least =
            arrange::SizeForWidth(mTree.Root(), arrange::MinimumSize(mTree.Root()).x);
        gtk_widget_set_size_request(Widget("layout"), int(least.x), int(least.y));
        Update();
    }

    void ChooseSource() { Choose("source"); }
    void ChooseDestination() { Choose("destination"); }
    void Choose(char const* inEntry) {
        auto* const chooser = GTK_FILE_CHOOSER(Widget("chooser"));
        gtk_file_chooser_set_filename(chooser, Get(inEntry).c_str());
        if (gtk_dialog_run(GTK_DIALOG(chooser)) == GTK_RESPONSE_ACCEPT) {
            g_autofree char* path = gtk_file_chooser_get_filename(chooser);
            Set(inEntry, path);
        }
        gtk_widget_hide(Widget("chooser"));
    }

    /// Keeps the fields, and shows what can be done and whether the start is a timecode.
    void Update() {
        for (char const* const name : kFields) {
            mPreferences.Set(name, Get(name));
        }
        bool const hasStart = Order(mPreferences).HasStart();
        auto const mark = hasStart ? gtk_style_context_remove_class : gtk_style_context_add_class;
        mark(gtk_widget_get_style_context(Widget("start")), "error");
        gtk_widget_set_sensitive(Widget("offload"), !mIsRunning && hasStart);
        gtk_widget_set_sensitive(Widget("cancel"), mIsRunning);
        Set("status",
            Text(hasStart ? "$$$/offload/Ready=Choose a card and a folder." : kNoTimecode));
    }

    /// Replaces a calculation by its result.
    void Calculate() {
        if (Order const order(mPreferences); order.HasStart()) {
            Set("start", order.Timecode());
        }
    }

    void Start() {
        Calculate();
        gtk_text_buffer_set_text(mFailures, "", 0);
        mShownFailures = 0;
        mIsRunning = true;
        Update();
        mOffload = std::make_unique<Offload>(Order(mPreferences), mPool, mLoop,
                                             [this](State const& inState) { Show(inState); });
    }
    void Cancel() { mOffload->Cancel(); }

    void Show(State const& inState) {
        auto const total = double(std::max(inState.totalBytes, inState.bytes + 1));
        g_object_set(Widget("bar"), "fraction", double(inState.bytes) / total, nullptr);
        for (; mShownFailures < inState.failures.size(); ++mShownFailures) {
            auto const line = utility::ToStd(inState.failures[mShownFailures]) + '\n';
            gtk_text_buffer_insert_at_cursor(mFailures, line.c_str(), -1);
        }
        mIsRunning = inState.summary.empty();
        Update();
        Set("status", mIsRunning ? Text("$$$/offload/Progress=^1 of ^2 ^2{one=file|other=files}",
                                        {inState.copied + inState.present, inState.files})
                                 : inState.summary);
    }

    proplist::PropList& mPreferences;
    proplist::TableLocalizer& mTexts;
    Executor const mPool;
    glue::GLibLoop const mAttached{G_PRIORITY_DEFAULT_IDLE};
    Executor const mLoop = threads::AdaptCurrentEventLoopAsExecutor();
    GtkBuilder* const mBuilder =
        gtk_builder_new_from_file(ToPath(Resource(u"window.ui"_utf16)).c_str());
    GtkTextBuffer* const mFailures = GTK_TEXT_BUFFER(gtk_builder_get_object(mBuilder, "failures"));
    arrange::LayoutTree mTree{arrange::LoadLayoutDescription(Resource(u"layout.xml"_utf16))};
    std::map<std::string, std::string> mLiterals;
    std::size_t mShownFailures = 0;
    bool mIsRunning = false;
    std::unique_ptr<Offload> mOffload;
};

} // namespace

void RunWindow(proplist::PropList& ioPreferences, proplist::TableLocalizer& ioTexts,
               Executor const& inPool) {
    gtk_init(nullptr, nullptr);
    Window const window(ioPreferences, ioTexts, inPool);
    gtk_main();
}

} // namespace offload
