#include "dialog/DialogWindow.h"

#include "dialog/ClipboardText.h"
#include "dialog/LibraryIcon.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace brindle::dialog {

namespace {

/// The dialog that is open.
struct Dialog {
    debug::DialogQuestion const& question;
    GtkWidget* window = nullptr;
    std::vector<GtkWidget*> tabOrder;
    int answer = 0;
};

Dialog* S_dialogP = nullptr;

void Close(int inAnswer) {
    if (S_dialogP != nullptr) {
        S_dialogP->answer = inAnswer;
        gtk_main_quit();
    }
}

/// At most so many UTF-16 units of a text, never half a surrogate pair.
std::string Beginning(std::string const& inText, int inUnits) {
    gchar const* place = inText.c_str();
    for (int units = 0; *place != '\0'; place = g_utf8_next_char(place)) {
        units += g_utf8_get_char(place) > 0xFFFF ? 2 : 1;
        if (units > inUnits) {
            break;
        }
    }
    return inText.substr(0, static_cast<std::size_t>(place - inText.c_str()));
}

void Copy(debug::DialogQuestion const& inQuestion) {
    constexpr int kMostUnits = 1000;
    CopyToClipboard(Beginning(inQuestion.heading, kMostUnits) + '\n' +
                    Beginning(inQuestion.body, kMostUnits));
}

void OnButton(GtkButton* inButton, gpointer) {
    auto const id = GPOINTER_TO_INT(g_object_get_data(G_OBJECT(inButton), "id"));
    auto const& question = S_dialogP->question;
    for (auto const& button : question.buttons) {
        if (button.id == id && button.isForCopy) {
            Copy(question);
            return;
        }
    }
    Close(id);
}

gboolean OnDelete(GtkWidget*, GdkEvent*, gpointer) {
    EndDialog();
    return TRUE;
}

/// Somebody else destroyed the window.
void OnDestroy(GtkWidget*, gpointer) {
    EndDialog();
    S_dialogP = nullptr;
}

void MoveFocus(int inStep) {
    auto const& order = S_dialogP->tabOrder;
    GtkWidget* const current = gtk_window_get_focus(GTK_WINDOW(S_dialogP->window));
    auto const place = std::find(order.begin(), order.end(), current);
    auto const size = static_cast<std::ptrdiff_t>(order.size());
    auto const index = place != order.end() ? place - order.begin() : -1;
    gtk_widget_grab_focus(order[static_cast<std::size_t>((index + inStep + size) % size)]);
}

/// Escape, and the tabulator in the order of the question, which the layout does not give.
gboolean OnKey(GtkWidget*, GdkEventKey* inEvent, gpointer) {
    switch (inEvent->keyval) {
    case GDK_KEY_Escape:
        EndDialog();
        return TRUE;
    case GDK_KEY_Tab:
    case GDK_KEY_KP_Tab:
        MoveFocus((inEvent->state & GDK_SHIFT_MASK) != 0 ? -1 : 1);
        gtk_window_set_focus_visible(GTK_WINDOW(S_dialogP->window), TRUE);
        return TRUE;
    case GDK_KEY_ISO_Left_Tab:
        MoveFocus(-1);
        gtk_window_set_focus_visible(GTK_WINDOW(S_dialogP->window), TRUE);
        return TRUE;
    default:
        return FALSE;
    }
}

/// The direction in which most labels are written.
GtkTextDirection DirectionOf(debug::DialogQuestion const& inQuestion, GtkWidget* inWidget) {
    std::ptrdiff_t rightToLeft = 0;
    for (auto const& button : inQuestion.buttons) {
        PangoLayout* const layout = gtk_widget_create_pango_layout(inWidget, button.label.c_str());
        rightToLeft += pango_layout_get_direction(layout, 0) == PANGO_DIRECTION_RTL ? 1 : 0;
        g_object_unref(layout);
    }
    auto const half = static_cast<std::ptrdiff_t>(inQuestion.buttons.size()) / 2;
    return rightToLeft > half ? GTK_TEXT_DIR_RTL : GTK_TEXT_DIR_LTR;
}

/// Converts from quarters of a character's width and eighths of its height.
struct DialogUnits {
    double width = 1;
    double height = 1;

    explicit DialogUnits(GtkWidget* inWidget) {
        PangoContext* const context = gtk_widget_get_pango_context(inWidget);
        PangoFontMetrics* const metrics = pango_context_get_metrics(context, nullptr, nullptr);
        width = pango_font_metrics_get_approximate_char_width(metrics) / 4.0 / PANGO_SCALE;
        height =
            (pango_font_metrics_get_ascent(metrics) + pango_font_metrics_get_descent(metrics)) /
            8.0 / PANGO_SCALE;
        pango_font_metrics_unref(metrics);
    }
    int Across(int inUnits) const { return static_cast<int>(inUnits * width); }
    int Down(int inUnits) const { return static_cast<int>(inUnits * height); }
};

GtkWidget* MakeHeading(std::string const& inText) {
    constexpr int kMostUnits = 1000; // a label has to lay out all that it has
    GtkWidget* const heading = gtk_label_new(Beginning(inText, kMostUnits).c_str());
    gtk_style_context_add_class(gtk_widget_get_style_context(heading), "heading");
    gtk_label_set_selectable(GTK_LABEL(heading), TRUE);
    gtk_label_set_line_wrap(GTK_LABEL(heading), TRUE);
    gtk_label_set_line_wrap_mode(GTK_LABEL(heading), PANGO_WRAP_WORD_CHAR);
    gtk_label_set_xalign(GTK_LABEL(heading), 0);
    gtk_widget_set_hexpand(heading, TRUE);
    return heading;
}

/// With breaks in very long lines, each of which the toolkit lays out as a whole.
std::string WithShortLines(std::string const& inText) {
    constexpr std::size_t kMostBytes = 4096;
    std::string text;
    std::size_t length = 0;
    for (char const byte : inText) {
        bool const isInCharacter = (byte & 0xC0) == 0x80;
        if (length >= kMostBytes && !isInCharacter && byte != '\n') {
            text += '\n';
            length = 0;
        }
        text += byte;
        length = byte == '\n' ? 0 : length + 1;
    }
    return text;
}

GtkWidget* MakeBody(std::string const& inText) {
    GtkWidget* const body = gtk_text_view_new();
    gtk_text_buffer_set_text(gtk_text_view_get_buffer(GTK_TEXT_VIEW(body)),
                             WithShortLines(inText).c_str(), -1);
    gtk_text_view_set_editable(GTK_TEXT_VIEW(body), FALSE);
    gtk_text_view_set_cursor_visible(GTK_TEXT_VIEW(body), FALSE);
    gtk_text_view_set_wrap_mode(GTK_TEXT_VIEW(body), GTK_WRAP_WORD_CHAR);
    return body;
}

GtkWidget* InScrolledWindow(GtkWidget* inWidget) {
    GtkWidget* const scrolled = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scrolled), GTK_POLICY_NEVER,
                                   GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_shadow_type(GTK_SCROLLED_WINDOW(scrolled), GTK_SHADOW_IN);
    gtk_container_add(GTK_CONTAINER(scrolled), inWidget);
    gtk_widget_set_vexpand(scrolled, TRUE);
    gtk_widget_set_hexpand(scrolled, TRUE);
    return scrolled;
}

/// With an underscore before its letter, and two for each of its own.
std::string WithMnemonic(std::string const& inLabel, debug::ButtonLetter const& inLetter) {
    std::string text;
    for (std::size_t i = 0; i < inLabel.size(); ++i) {
        if (i == inLetter.place || inLabel[i] == '_') {
            text += '_';
        }
        text += inLabel[i];
    }
    return text;
}

/// The first button stands at the end of the row.
GtkWidget* MakeButtons(Dialog& ioDialog, DialogUnits const& inUnits) {
    auto const& buttons = ioDialog.question.buttons;
    auto const letters = debug::LettersOf(buttons);
    GtkWidget* const row = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, inUnits.Across(5));
    gtk_box_set_homogeneous(GTK_BOX(row), TRUE);
    gtk_widget_set_halign(row, GTK_ALIGN_END);
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        auto const label = WithMnemonic(buttons[i].label, letters[i]);
        GtkWidget* const button = gtk_button_new_with_mnemonic(label.c_str());
        gtk_widget_set_can_default(button, TRUE);
        gtk_widget_set_size_request(button, inUnits.Across(55), -1);
        g_object_set_data(G_OBJECT(button), "id", GINT_TO_POINTER(buttons[i].id));
        g_signal_connect(button, "clicked", G_CALLBACK(OnButton), nullptr);
        if (buttons[i].isDefault) {
            gtk_style_context_add_class(gtk_widget_get_style_context(button), "suggested-action");
        }
        gtk_box_pack_end(GTK_BOX(row), button, FALSE, TRUE, 0);
        ioDialog.tabOrder.push_back(button);
    }
    return row;
}

void Fill(Dialog& ioDialog) {
    GtkWidget* const window = ioDialog.window;
    DialogUnits const units(window);
    GtkWidget* const grid = gtk_grid_new();
    g_object_set(grid, "margin", units.Across(7), "column-spacing",
                 static_cast<guint>(units.Across(7)), "row-spacing",
                 static_cast<guint>(units.Down(6)), nullptr);
    GtkWidget* const heading = MakeHeading(ioDialog.question.heading);
    GtkWidget* const body = MakeBody(ioDialog.question.body);
    GtkWidget* const buttons = MakeButtons(ioDialog, units);
    ioDialog.tabOrder.push_back(heading);
    ioDialog.tabOrder.push_back(body);
    gtk_grid_attach(GTK_GRID(grid), MakeIconWidget(units.Down(20)), 0, 0, 1, 2);
    gtk_grid_attach(GTK_GRID(grid), heading, 1, 0, 1, 1);
    gtk_grid_attach(GTK_GRID(grid), InScrolledWindow(body), 1, 1, 1, 1);
    gtk_grid_attach(GTK_GRID(grid), buttons, 0, 2, 2, 1);
    gtk_container_add(GTK_CONTAINER(window), grid);
    gtk_window_set_default_size(GTK_WINDOW(window), units.Across(ioDialog.question.width),
                                units.Down(ioDialog.question.height));
}

void SetStyle() {
    GtkCssProvider* const style = gtk_css_provider_new();
    gtk_css_provider_load_from_data(style,
                                    "label.heading { font-weight: bold; font-size: 1.15em; }"
                                    "textview { padding: 0.5em; }",
                                    -1, nullptr);
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(style),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(style);
}

} // namespace

int RunDialog(debug::DialogQuestion const& inQuestion) {
    SetStyle();
    Dialog dialog{inQuestion, gtk_window_new(GTK_WINDOW_TOPLEVEL), {}, inQuestion.closingButton};
    gtk_widget_set_default_direction(DirectionOf(inQuestion, dialog.window));
    S_dialogP = &dialog;
    auto* const window = GTK_WINDOW(dialog.window);
    gtk_window_set_title(window, inQuestion.title.c_str());
    gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DIALOG);
    gtk_window_set_position(window, GTK_WIN_POS_CENTER);
    gtk_window_set_modal(window, TRUE);
    gtk_window_set_keep_above(window, TRUE);
    GdkPixbuf* const icon = MakeIconPicture(64);
    gtk_window_set_icon(window, icon);
    g_object_unref(icon);
    Fill(dialog);
    g_signal_connect(window, "delete-event", G_CALLBACK(OnDelete), nullptr);
    g_signal_connect(window, "key-press-event", G_CALLBACK(OnKey), nullptr);
    g_signal_connect(window, "destroy", G_CALLBACK(OnDestroy), nullptr);
    gtk_widget_grab_focus(dialog.tabOrder.front());
    gtk_widget_show_all(dialog.window);
    gtk_window_present(window);
    gtk_main();
    if (S_dialogP != nullptr) {
        // Only hidden, for what was copied by the keyboard lives in the widgets.
        gtk_widget_hide(dialog.window);
    }
    gdk_display_flush(gdk_display_get_default());
    S_dialogP = nullptr;
    return dialog.answer;
}

void EndDialog() {
    if (S_dialogP != nullptr) {
        Close(S_dialogP->question.closingButton);
    }
}

} // namespace brindle::dialog
