// SPDX-License-Identifier: MIT
#include <algorithm>

#include "platform/window/x11/PixelFormat.h"

namespace platform {

namespace {

const xcb_visualtype_t* findVisual(const xcb_setup_t* setup, xcb_visualid_t id) {
    for (auto s = xcb_setup_roots_iterator(setup); s.rem; xcb_screen_next(&s)) {
        for (auto d = xcb_screen_allowed_depths_iterator(s.data); d.rem; xcb_depth_next(&d)) {
            const xcb_visualtype_t* const first = xcb_depth_visuals(d.data);
            const xcb_visualtype_t* const last = first + xcb_depth_visuals_length(d.data);
            const auto* const found =
                std::find_if(first, last, [id](const auto& v) { return v.visual_id == id; });
            if (found != last) return found;
        }
    }
    return nullptr;
}

std::optional<PixelFormat::Layout> layoutFor(const xcb_setup_t* setup, int depth) {
    const xcb_format_t* const first = xcb_setup_pixmap_formats(setup);
    const xcb_format_t* const last = first + xcb_setup_pixmap_formats_length(setup);
    const auto* const found =
        std::find_if(first, last, [depth](const auto& f) { return f.depth == depth; });
    if (found == last) return std::nullopt;
    return PixelFormat::Layout{
        .bitsPerPixel = found->bits_per_pixel,
        .scanlinePad = found->scanline_pad,
        .leastFirst = setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST,
        // Several pixels in a byte have the bit order of bitmaps; other pixels have the
        // byte order of images.
        .leastBitFirst =
            (found->bits_per_pixel == 1 ? setup->bitmap_format_bit_order
                                        : setup->image_byte_order) == XCB_IMAGE_ORDER_LSB_FIRST};
}

struct Wish {
    std::uint16_t red, green, blue;
};

// The colours wanted from a colour table: a cube of even steps, or a ramp of greys.
std::vector<Wish> wishes(bool grey) {
    std::vector<Wish> all;
    const auto level = [](int i, int steps) {
        return static_cast<std::uint16_t>(i * 65535 / (steps - 1));
    };
    if (grey) {
        for (int i = 0; i < 64; ++i)
            all.push_back({level(i, 64), level(i, 64), level(i, 64)});
        return all;
    }
    for (int r = 0; r < 5; ++r)
        for (int g = 0; g < 9; ++g)
            for (int b = 0; b < 5; ++b)
                all.push_back({level(r, 5), level(g, 9), level(b, 5)});
    return all;
}

std::vector<PixelFormat::PaletteColour> takeColours(xcb_connection_t* connection,
                                                    xcb_colormap_t table, bool grey) {
    std::vector<xcb_alloc_color_cookie_t> asked;
    for (const Wish& wish : wishes(grey))
        asked.push_back(xcb_alloc_color(connection, table, wish.red, wish.green, wish.blue));
    std::vector<PixelFormat::PaletteColour> colours;
    const auto add = [&colours](std::uint32_t pixel, const auto& c) {
        colours.push_back({pixel, static_cast<std::uint8_t>(c.red >> 8),
                           static_cast<std::uint8_t>(c.green >> 8),
                           static_cast<std::uint8_t>(c.blue >> 8)});
    };
    for (const auto cookie : asked) {
        const auto reply = answer(connection, cookie, xcb_alloc_color_reply);
        if (reply) add(reply->pixel, *reply);
    }
    return colours;
}

// Adds the present colours of a full table, which other clients allocated.
void addPresentColours(xcb_connection_t* connection, xcb_colormap_t table, unsigned entries,
                       std::vector<PixelFormat::PaletteColour>& colours) {
    std::vector<std::uint32_t> pixels;
    for (std::uint32_t i = 0; i < entries; ++i)
        pixels.push_back(i);
    const auto reply =
        answer(connection, xcb_query_colors(connection, table, entries, pixels.data()),
               xcb_query_colors_reply);
    if (!reply) return;
    const xcb_rgb_t* const found = xcb_query_colors_colors(reply.get());
    const int count = xcb_query_colors_colors_length(reply.get());
    for (int i = 0; i < count; ++i)
        colours.push_back({static_cast<std::uint32_t>(i),
                           static_cast<std::uint8_t>(found[i].red >> 8),
                           static_cast<std::uint8_t>(found[i].green >> 8),
                           static_cast<std::uint8_t>(found[i].blue >> 8)});
}

}  // namespace

std::optional<PixelFormat> pixelFormatFor(xcb_connection_t* connection, const WindowLook& look) {
    const xcb_setup_t* const setup = xcb_get_setup(connection);
    const xcb_visualtype_t* const visual = findVisual(setup, look.visual);
    const auto layout = layoutFor(setup, look.depth);
    if (!visual || !layout) return std::nullopt;
    if (visual->_class == XCB_VISUAL_CLASS_TRUE_COLOR ||
        visual->_class == XCB_VISUAL_CLASS_DIRECT_COLOR) {
        const std::uint32_t colours = visual->red_mask | visual->green_mask | visual->blue_mask;
        // Bits without a colour are alpha in a visual of depth 32.
        const std::uint32_t alpha = look.depth == 32 ? ~colours : 0U;
        return PixelFormat(*layout,
                           {visual->red_mask, visual->green_mask, visual->blue_mask, alpha});
    }
    const bool grey = visual->_class == XCB_VISUAL_CLASS_STATIC_GRAY ||
                      visual->_class == XCB_VISUAL_CLASS_GRAY_SCALE;
    auto colours = takeColours(connection, look.colormap, grey);
    if (colours.size() < wishes(grey).size())
        addPresentColours(connection, look.colormap, visual->colormap_entries, colours);
    return PixelFormat(*layout, colours, grey);
}

}  // namespace platform
