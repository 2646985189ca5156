#include "dialog/ClipboardText.h"

#include <gtk/gtk.h>

namespace brindle::dialog {

namespace {

std::string S_text;
bool S_isOurs = false;
bool S_isKept = false; // only the clipboard keeps the process alive

GtkClipboard* Clipboard() {
    return gtk_clipboard_get(GDK_SELECTION_CLIPBOARD);
}

void OnGet(GtkClipboard*, GtkSelectionData* ioData, guint, gpointer) {
    gtk_selection_data_set_text(ioData, S_text.data(), static_cast<gint>(S_text.size()));
}

void OnClear(GtkClipboard*, gpointer) {
    S_isOurs = false;
    if (S_isKept) {
        gtk_main_quit();
    }
}

/// A text that was copied from a text field lives in that field.
void TakeOverFromWidgets() {
    bool const isOfThisProcess = gdk_selection_owner_get(GDK_SELECTION_CLIPBOARD) != nullptr;
    if (isOfThisProcess && !S_isOurs) {
        if (gchar* const text = gtk_clipboard_wait_for_text(Clipboard())) {
            CopyToClipboard(text);
            g_free(text);
        }
    }
}

} // namespace

void CopyToClipboard(std::string const& inText) {
    GtkTargetList* const list = gtk_target_list_new(nullptr, 0);
    gtk_target_list_add_text_targets(list, 0);
    gint count = 0;
    GtkTargetEntry* const targets = gtk_target_table_new_from_list(list, &count);
    std::string const text = inText; // the old text may be cleared on the way
    S_isOurs = gtk_clipboard_set_with_data(Clipboard(), targets, static_cast<guint>(count), OnGet,
                                           OnClear, nullptr) == TRUE;
    S_text = text;
    gtk_target_table_free(targets, count);
    gtk_target_list_unref(list);
}

void KeepClipboard(bool (*inBeforeWaiting)()) {
    TakeOverFromWidgets();
    if (!S_isOurs) {
        return;
    }
    if (gdk_display_supports_clipboard_persistence(gdk_display_get_default()) == TRUE) {
        gtk_clipboard_set_can_store(Clipboard(), nullptr, 0);
        gtk_clipboard_store(Clipboard());
        return;
    }
    S_isKept = inBeforeWaiting();
    if (S_isKept) {
        gtk_main();
    }
}

} // namespace brindle::dialog
