#pragma once

#include <gtk/gtk.h>

namespace brindle::dialog {

/// A widget that shows the library's icon, so many pixels wide and high, sharp at every scale.
GtkWidget* MakeIconWidget(int inSize);

/// The same picture for the window and the task bar. The caller releases it.
GdkPixbuf* MakeIconPicture(int inSize);

} // namespace brindle::dialog
