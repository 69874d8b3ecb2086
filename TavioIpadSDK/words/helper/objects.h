// Owners of what the libraries of this program allocate.
#pragma once

#include <fontconfig/fontconfig.h>
#include <memory>
#include <pango/pangocairo.h>

#include <cairo.h>

namespace tavio::words_helper {

template <auto kFree>
struct FreedBy {
    template <typename Object>
    void operator()(Object* object) const {
        kFree(object);
    }
};

using FontConfig = std::unique_ptr<FcConfig, FreedBy<FcConfigDestroy>>;
using FontPattern = std::unique_ptr<FcPattern, FreedBy<FcPatternDestroy>>;
using FontProperties = std::unique_ptr<FcObjectSet, FreedBy<FcObjectSetDestroy>>;
using FontSet = std::unique_ptr<FcFontSet, FreedBy<FcFontSetDestroy>>;

using FontMap = std::unique_ptr<PangoFontMap, FreedBy<g_object_unref>>;
using TextContext = std::unique_ptr<PangoContext, FreedBy<g_object_unref>>;
using Layout = std::unique_ptr<PangoLayout, FreedBy<g_object_unref>>;
using LineIterator = std::unique_ptr<PangoLayoutIter, FreedBy<pango_layout_iter_free>>;
using TextAttributes = std::unique_ptr<PangoAttrList, FreedBy<pango_attr_list_unref>>;
using Description = std::unique_ptr<PangoFontDescription, FreedBy<pango_font_description_free>>;

using FontOptions = std::unique_ptr<cairo_font_options_t, FreedBy<cairo_font_options_destroy>>;
using Surface = std::unique_ptr<cairo_surface_t, FreedBy<cairo_surface_destroy>>;
using Context = std::unique_ptr<cairo_t, FreedBy<cairo_destroy>>;

}  // namespace tavio::words_helper
