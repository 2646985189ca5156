#include "Window.h"

#include <brindle/arrange/LayoutTree.h>
#include <brindle/arrange/TreeSizes.h>
#include <brindle/config/Text.h>
#include <brindle/filesupport/CommonDirs.h>
#include <gtk/gtk.h>

namespace offload {

namespace {

/// The fields that are preferences, and the properties that hold their values.
constexpr std::pair<char const*, char const*> kFields[] = {
    {"source", "text"}, {"destination", "text"}, {"start", "text"}, {"counting", "active-id"}};

filesupport::File Resource(UTF16String const& inName) {
    return {filesupport::commondirs::ResourcesDir(), inName};
}

// bridge: a layout from a file
arrange::LayoutDescription Layout(filesupport::File const& inFile) {
    proplist::PropList list;
    proplist::utils::LoadPropList(inFile, list);
    return arrange::ReadLayoutDescription(list);
}
// end of bridge

/// Has the function called at each signal, as long as the object exists. The signal returns
/// nothing.
void Connect(gpointer ioObject, char const* inSignal, std::function<void()> inFunction) {
    using Function = std::function<void()>;
    auto const call = +[](gpointer inCall) { (*static_cast<Function*>(inCall))(); };
    auto const destroy = +[](gpointer inCall, GClosure*) { delete static_cast<Function*>(inCall); };
    g_signal_connect_data(ioObject, inSignal, G_CALLBACK(call), new Function(std::move(inFunction)),
                          destroy, G_CONNECT_SWAPPED);
}

/// The leaf is as large as the widget wants to be, and grows where the layout says so.
void Bind(GtkWidget* inWidget, arrange::FunctionLeaf& ioLeaf) {
    ioLeaf.SetSizes([=, growsWide = ioLeaf.HorizontallyExpandable(),
                     growsHigh = ioLeaf.VerticallyExpandable()] {
        GtkRequisition natural;
        gtk_widget_get_preferred_size(inWidget, nullptr, &natural);
        auto const width = static_cast<float>(natural.width);
        auto const height = static_cast<float>(natural.height);
        return arrange::LeafSizes{growsWide ? arrange::Growing(width) : width,
                                  growsHigh ? arrange::Growing(height) : height};
    });
    ioLeaf.SetPlace([=](geom::RectT<float> const& inRect) {
        GtkAllocation place{static_cast<int>(inRect.x), static_cast<int>(inRect.y),
                            static_cast<int>(inRect.width), static_cast<int>(inRect.height)};
        gtk_widget_size_allocate(inWidget, &place);
    });
}

/// The widgets are those of window.ui, and their places those of the leaves of layout.xml that have
/// their names. Their labels are localisation literals.
class Window {
public:
    Window(Host const& inHost, bool inQuitsWhenDone)
        : mHost(inHost), mQuitsWhenDone(inQuitsWhenDone) {
        for (std::string const& name : mTree.LeafNames()) {
            Bind(Widget(name), mTree.Leaf(name));
            if (GTK_IS_LABEL(Widget(name)) || GTK_IS_BUTTON(Widget(name))) {
                mLiterals[name] = Get(name, "label");
            }
        }
        mTree.Leaf("status").SetHeightForWidth([this](float inWidth) {
            int height = 0;
            gtk_widget_get_preferred_height_for_width(Widget("status"), static_cast<int>(inWidth),
                                                      nullptr, &height);
            return static_cast<float>(height);
        });
        Set("language", "active-id", Text("$$$/offload/Language=en"));
        for (auto const& [field, property] : kFields) {
            Set(field, property, mHost.preferences.Get(field, Get(field, property)));
            Connect(Widget(field), "changed", [this] { Update(); });
        }
        Connect(Widget("start"), "activate", [this] { Calculate(); });
        Connect(Widget("choose-source"), "clicked", [this] { Choose("source"); });
        Connect(Widget("choose-destination"), "clicked", [this] { Choose("destination"); });
        Connect(Widget("offload"), "clicked", [this] { Start(); });
        Connect(Widget("cancel"), "clicked", [this] { mOffload->Cancel(); });
        Connect(Widget("language"), "changed", [this] { Translate(); });
        Connect(Widget("layout"), "size-allocate", [this] { Arrange(); });
        Connect(Widget("window"), "destroy", gtk_main_quit);
        gtk_window_set_default_size(GTK_WINDOW(Widget("window")),
                                    mHost.preferences.Get("width", 600),
                                    mHost.preferences.Get("height", 440));
        gtk_widget_show_all(Widget("layout")); // what is not shown has no size
        Translate();
        gtk_widget_show(Widget("window"));
    }
    ~Window() { g_object_unref(mBuilder); }

    void Start() {
        Calculate();
        if (gtk_widget_is_sensitive(Widget("offload"))) {
            gtk_text_buffer_set_text(Failures(), "", 0);
            mShownFailures = 0;
            mIsRunning = true;
            Update();
            mOffload = std::make_unique<Offload>(
                Order(mHost.preferences), mHost.pool, mHost.loop,
                [this](State const& inState) { Show(inState); },
                [this](State const& inState) { Finish(inState); });
        }
    }

    bool hasSucceeded = true;

private:
    GtkWidget* Widget(std::string const& inName) const {
        return GTK_WIDGET(gtk_builder_get_object(mBuilder, inName.c_str()));
    }
    std::string Get(std::string const& inWidget, char const* inProperty) const {
        g_autofree char* text = nullptr;
        g_object_get(Widget(inWidget), inProperty, &text, nullptr);
        return text == nullptr ? "" : text;
    }
    void Set(std::string const& inWidget, char const* inProperty, std::string const& inText) {
        g_object_set(Widget(inWidget), inProperty, inText.c_str(), nullptr);
    }
    GtkTextBuffer* Failures() const {
        return GTK_TEXT_BUFFER(gtk_builder_get_object(mBuilder, "failures"));
    }

    void Arrange() {
        int const width = gtk_widget_get_allocated_width(Widget("layout"));
        int const height = gtk_widget_get_allocated_height(Widget("layout"));
        mHost.preferences.Set("width", width);
        mHost.preferences.Set("height", height);
        mTree.Root().Arrange({0, 0, static_cast<float>(width), static_cast<float>(height)});
    }

    void Translate() {
        mHost.preferences.Set("language", Get("language", "active-id"));
        mHost.texts.SetLanguages({Get("language", "active-id")});
        for (auto const& [name, literal] : mLiterals) {
            Set(name, "label", Text(literal.c_str()));
        }
        mTree.Root().InvalidateAll();
        float const width = arrange::MinimumSize(mTree.Root()).x;
        float const height = arrange::SizeForWidth(mTree.Root(), width).y;
        gtk_widget_set_size_request(Widget("layout"), static_cast<int>(width),
                                    static_cast<int>(height));
        Update();
    }

    void Choose(char const* inEntry) {
        auto* const chooser =
            gtk_file_chooser_native_new(nullptr, GTK_WINDOW(Widget("window")),
                                        GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER, nullptr, nullptr);
        gtk_file_chooser_set_filename(GTK_FILE_CHOOSER(chooser), Get(inEntry, "text").c_str());
        if (gtk_native_dialog_run(GTK_NATIVE_DIALOG(chooser)) == GTK_RESPONSE_ACCEPT) {
            g_autofree char* path = gtk_file_chooser_get_filename(GTK_FILE_CHOOSER(chooser));
            Set(inEntry, "text", path);
        }
        g_object_unref(chooser);
    }

    /// Replaces a calculation by its result.
    void Calculate() {
        Order const order(mHost.preferences);
        if (order.start.fault == time::TimecodeFault::kNone) {
            Set("start", "text", order.format->ToText(order.start.time));
        }
    }

    /// Keeps the fields, and shows what can be done and whether the start is a timecode.
    void Update() {
        for (auto const& [field, property] : kFields) {
            mHost.preferences.Set(field, Get(field, property));
        }
        bool const isTimecode = Order(mHost.preferences).start.fault == time::TimecodeFault::kNone;
        bool const hasPlaces =
            !Get("source", "text").empty() && !Get("destination", "text").empty();
        auto const mark = isTimecode ? gtk_style_context_remove_class : gtk_style_context_add_class;
        mark(gtk_widget_get_style_context(Widget("start")), "error");
        gtk_widget_set_sensitive(Widget("offload"), !mIsRunning && isTimecode && hasPlaces);
        gtk_widget_set_sensitive(Widget("cancel"), mIsRunning);
        SetStatus(isTimecode ? Text("$$$/offload/Ready=Choose a card and a folder for its files.")
                             : Text("$$$/offload/NoTimecode=The start is not a timecode."));
    }

    void SetStatus(std::string const& inText) {
        Set("status", "label", inText);
        mTree.Leaf("status").MarkInvalid();
    }

    void Show(State const& inState) {
        auto const total = static_cast<double>(std::max<std::uint64_t>(inState.totalBytes, 1));
        g_object_set(Widget("bar"), "fraction",
                     std::min(static_cast<double>(inState.bytes) / total, 1.0), nullptr);
        for (; mShownFailures < inState.failures.size(); ++mShownFailures) {
            std::string const line = utility::ToStd(inState.failures[mShownFailures]) + '\n';
            gtk_text_buffer_insert_at_cursor(Failures(), line.c_str(), -1);
        }
        SetStatus(Text("$$$/offload/Progress=^1 of ^2 ^2{one=file|other=files}, ^3 of ^4 MB",
                       {inState.copied + inState.present, inState.files, inState.bytes / 1'000'000,
                        inState.totalBytes / 1'000'000}));
    }

    void Finish(State const& inState) {
        Show(inState);
        mIsRunning = false;
        hasSucceeded = inState.HasSucceeded();
        Update();
        SetStatus(utility::ToStd(inState.Summary()));
        if (mQuitsWhenDone) {
            gtk_widget_destroy(Widget("window"));
        }
    }

    /// As GTK takes it.
    static std::string Text(char const* inLiteral,
                            std::initializer_list<config::ReplacementValue> inValues = {}) {
        return utility::ToStd(config::Text(inLiteral, inValues));
    }

    Host const mHost;
    bool const mQuitsWhenDone;
    GtkBuilder* const mBuilder =
        gtk_builder_new_from_file(ToPath(Resource(u"window.ui"_utf16)).c_str());
    arrange::LayoutTree mTree{Layout(Resource(u"layout.xml"_utf16))};
    std::map<std::string, std::string> mLiterals;
    std::size_t mShownFailures = 0;
    bool mIsRunning = false;
    std::unique_ptr<Offload> mOffload;
};

} // namespace

bool RunWindow(Host const& inHost, std::set<std::string> const& inOptions) {
    gtk_init(nullptr, nullptr);
    Window window(inHost, inOptions.count("--quit-when-done") != 0);
    if (inOptions.count("--start") != 0) {
        window.Start();
    }
    gtk_main();
    return window.hasSucceeded;
}

} // namespace offload
