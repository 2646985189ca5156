#include "dialog/LibraryIcon.h"

#include <initializer_list>

namespace brindle::dialog {

namespace {

constexpr double kPi = 3.14159265358979323846;

void RoundedSquare(cairo_t* ioCairo, double inRadius) {
    double const far = 1 - inRadius;
    cairo_new_sub_path(ioCairo);
    cairo_arc(ioCairo, far, inRadius, inRadius, -kPi / 2, 0);
    cairo_arc(ioCairo, far, far, inRadius, 0, kPi / 2);
    cairo_arc(ioCairo, inRadius, far, inRadius, kPi / 2, kPi);
    cairo_arc(ioCairo, inRadius, inRadius, inRadius, kPi, kPi * 3 / 2);
    cairo_close_path(ioCairo);
}

/// A tile with the dark stripes of a brindled coat and an exclamation mark.
void Draw(cairo_t* ioCairo, double inSize) {
    cairo_save(ioCairo);
    cairo_scale(ioCairo, inSize, inSize);
    RoundedSquare(ioCairo, 0.2);
    cairo_clip_preserve(ioCairo);
    cairo_pattern_t* const coat = cairo_pattern_create_linear(0, 0, 0, 1);
    cairo_pattern_add_color_stop_rgb(coat, 0, 0.85, 0.58, 0.27);
    cairo_pattern_add_color_stop_rgb(coat, 1, 0.67, 0.38, 0.14);
    cairo_set_source(ioCairo, coat);
    cairo_fill(ioCairo);
    cairo_pattern_destroy(coat);
    cairo_set_source_rgba(ioCairo, 0.25, 0.12, 0.04, 0.45);
    cairo_set_line_width(ioCairo, 0.09);
    for (double start : {-0.35, 0.0, 0.35, 0.7, 1.05}) {
        cairo_move_to(ioCairo, start, -0.05);
        cairo_curve_to(ioCairo, start + 0.2, 0.3, start - 0.2, 0.7, start, 1.05);
        cairo_stroke(ioCairo);
    }
    cairo_set_source_rgb(ioCairo, 1, 1, 1);
    cairo_set_line_cap(ioCairo, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(ioCairo, 0.17);
    cairo_move_to(ioCairo, 0.5, 0.24);
    cairo_line_to(ioCairo, 0.5, 0.54);
    cairo_stroke(ioCairo);
    cairo_arc(ioCairo, 0.5, 0.77, 0.1, 0, 2 * kPi);
    cairo_fill(ioCairo);
    cairo_restore(ioCairo);
}

gboolean OnDraw(GtkWidget* inWidget, cairo_t* ioCairo, gpointer) {
    Draw(ioCairo, gtk_widget_get_allocated_width(inWidget));
    return TRUE;
}

} // namespace

GtkWidget* MakeIconWidget(int inSize) {
    GtkWidget* const widget = gtk_drawing_area_new();
    gtk_widget_set_size_request(widget, inSize, inSize);
    gtk_widget_set_valign(widget, GTK_ALIGN_START);
    gtk_widget_set_halign(widget, GTK_ALIGN_START);
    g_signal_connect(widget, "draw", G_CALLBACK(OnDraw), nullptr);
    return widget;
}

GdkPixbuf* MakeIconPicture(int inSize) {
    cairo_surface_t* const surface =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, inSize, inSize);
    cairo_t* const cairo = cairo_create(surface);
    Draw(cairo, inSize);
    cairo_destroy(cairo);
    GdkPixbuf* const picture = gdk_pixbuf_get_from_surface(surface, 0, 0, inSize, inSize);
    cairo_surface_destroy(surface);
    return picture;
}

} // namespace brindle::dialog
