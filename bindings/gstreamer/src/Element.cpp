#include "Element.h"

#include <gst/video/gstvideometa.h>
#include <gst/video/gstvideopool.h>
#include <gst/video/video.h>

#include <exception>
#include <new>

#include "Conversion.h"
#include "Properties.h"
#include "common/Refusal.h"

namespace {

using zrgstreamer::CapsPointer;
using zrgstreamer::Conversion;
using zrgstreamer::SourceFrame;

GST_DEBUG_CATEGORY_STATIC(zr_convert_debug);
#define GST_CAT_DEFAULT zr_convert_debug

struct ZrConvert {
  GstBaseTransform parent;
  Conversion* conversion;
};

struct ZrConvertClass {
  GstBaseTransformClass parent;
};

G_DEFINE_TYPE(ZrConvert, zr_convert, GST_TYPE_BASE_TRANSFORM)

Conversion& ConversionOf(gpointer instance) {
  return *static_cast<ZrConvert*>(instance)->conversion;
}

// Runs an action and posts what it throws as an error of the element.
template <typename Action>
bool Succeeds(gpointer element, Action&& action) {
  try {
    action();
    return true;
  } catch (const std::bad_alloc&) {
    GST_ELEMENT_ERROR(element, RESOURCE, NO_SPACE_LEFT, ("There is not enough memory"), (nullptr));
  } catch (const std::exception& refusal) {
    GST_ELEMENT_ERROR(element, STREAM, FORMAT, ("%s", refusal.what()), (nullptr));
  }
  return false;
}

// The source frame of fixed caps, or nothing where they are not one.
std::optional<SourceFrame> TrySource(gpointer instance, const GstCaps* caps) {
  try {
    return ConversionOf(instance).SourceOf(caps);
  } catch (const std::exception& refusal) {
    GST_DEBUG_OBJECT(instance, "%s", refusal.what());
    return std::nullopt;
  }
}

// Copies what conversion leaves alone.
void CopyFields(const GstStructure* from, GstStructure* to) {
  for (const char* field : {"width", "height", "framerate", "pixel-aspect-ratio", "interlace-mode"}) {
    if (const GValue* value = gst_structure_get_value(from, field)) gst_structure_set_value(to, field, value);
  }
}

// Frames without a size in their caps have that of the properties.
void CompleteSize(const zrgstreamer::Settings& settings, const GstStructure* from, GstStructure* structure) {
  const auto complete = [&](const char* field, std::uint32_t side) {
    if (side > 0 && !gst_structure_has_field(from, field))
      gst_structure_set(structure, field, G_TYPE_INT, static_cast<gint>(side), nullptr);
  };
  complete("width", settings.width);
  complete("height", settings.height);
}

void AppendWithFieldsOf(const GstStructure* from, const GstCaps* offered,
                        const zrgstreamer::Settings& settings, GstPadDirection direction, GstCaps* result) {
  for (guint i = 0; i < gst_caps_get_size(offered); ++i) {
    GstStructure* structure = gst_structure_copy(gst_caps_get_structure(offered, i));
    CopyFields(from, structure);
    if (direction == GST_PAD_SINK) CompleteSize(settings, from, structure);
    result = gst_caps_merge_structure(result, structure);
    // A source need not say its size where the properties do.
    if (direction == GST_PAD_SRC && settings.width > 0 && settings.height > 0) {
      GstStructure* sizeless = gst_structure_copy(gst_caps_get_structure(offered, i));
      gst_structure_remove_fields(sizeless, "width", "height", "framerate", nullptr);
      result = gst_caps_merge_structure(result, sizeless);
    }
  }
}

GstCaps* TransformCaps(GstBaseTransform* base, GstPadDirection direction, GstCaps* caps, GstCaps* filter) {
  const zrgstreamer::Settings settings = ConversionOf(base).GetSettings();
  const CapsPointer offered = direction == GST_PAD_SINK
                                  ? zrgstreamer::SourceCaps()
                                  : zrgstreamer::SinkCaps(!settings.sourceFormat.empty());
  GstCaps* result = gst_caps_new_empty();
  for (guint i = 0; i < gst_caps_get_size(caps); ++i)
    AppendWithFieldsOf(gst_caps_get_structure(caps, i), offered.get(), settings, direction, result);
  if (!filter) return result;
  GstCaps* both = gst_caps_intersect_full(filter, result, GST_CAPS_INTERSECT_FIRST);
  gst_caps_unref(result);
  return both;
}

// Takes the best format that the other side has; what is left open after that is the base class's to fixate.
GstCaps* FixateCaps(GstBaseTransform* base, GstPadDirection direction, GstCaps* caps, GstCaps* others) {
  const auto source = direction == GST_PAD_SINK ? TrySource(base, caps) : std::nullopt;
  if (source) {
    for (const zrgstreamer::RawFormat* row : zrgstreamer::BestFirst(*source->format)) {
      const CapsPointer wanted(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING,
                                                   gst_video_format_to_string(row->format), nullptr));
      GstCaps* both = gst_caps_intersect_full(others, wanted.get(), GST_CAPS_INTERSECT_FIRST);
      if (!gst_caps_is_empty(both)) {
        gst_caps_unref(others);
        return gst_caps_fixate(both);
      }
      gst_caps_unref(both);
    }
  }
  return gst_caps_fixate(others);
}

gboolean SetCaps(GstBaseTransform* base, GstCaps* source, GstCaps* destination) {
  Conversion& conversion = ConversionOf(base);
  const bool same = conversion.GetSettings().sourceFormat.empty() && gst_caps_is_equal(source, destination);
  gst_base_transform_set_passthrough(base, same);
  return same || Succeeds(base, [&] { conversion.Negotiate(source, destination); });
}

// Bytes of a frame or a picture of fixed caps.
gboolean GetUnitSize(GstBaseTransform* base, GstCaps* caps, gsize* size) {
  GstVideoInfo info;
  if (ConversionOf(base).GetSettings().sourceFormat.empty() && gst_video_info_from_caps(&info, caps)) {
    *size = GST_VIDEO_INFO_SIZE(&info);
    return TRUE;
  }
  const auto source = TrySource(base, caps);
  ZrConvertersLib::FrameLayout layout;
  if (!source || !ZrConvertersLib::DescribeFrame(source->format->id, source->width, source->height,
                                                 source->stride, layout)
                      .IsSuccess())
    return FALSE;
  *size = static_cast<gsize>(layout.leastBytes);
  return TRUE;
}

// A picture's size depends on its caps only: frames may have padding and trailers.
gboolean TransformSize(GstBaseTransform* base, GstPadDirection direction, GstCaps*, gsize, GstCaps* others,
                       gsize* size) {
  GstVideoInfo info;
  if (direction == GST_PAD_SINK && gst_video_info_from_caps(&info, others)) {
    *size = GST_VIDEO_INFO_SIZE(&info);
    return TRUE;
  }
  return GetUnitSize(base, others, size);
}

void AddPool(GstQuery* query, GstBufferPool* pool, GstCaps* caps, guint size, bool videoMeta) {
  GstStructure* config = gst_buffer_pool_get_config(pool);
  gst_buffer_pool_config_set_params(config, caps, size, 0, 0);
  if (videoMeta) gst_buffer_pool_config_add_option(config, GST_BUFFER_POOL_OPTION_VIDEO_META);
  if (gst_buffer_pool_set_config(pool, config)) gst_query_add_allocation_pool(query, pool, size, 0, 0);
  gst_object_unref(pool);
}

// Offers upstream a pool, and says that lines may lie as a GstVideoMeta tells.
gboolean ProposeAllocation(GstBaseTransform* base, GstQuery* decided, GstQuery* query) {
  if (!GST_BASE_TRANSFORM_CLASS(zr_convert_parent_class)->propose_allocation(base, decided, query))
    return FALSE;
  if (!decided) return TRUE;  // passthrough: downstream has answered
  GstCaps* caps = nullptr;
  gboolean needsPool = FALSE;
  gsize size = 0;
  gst_query_parse_allocation(query, &caps, &needsPool);
  if (!caps || !GetUnitSize(base, caps, &size)) return FALSE;
  if (needsPool) {
    const bool raw = gst_structure_has_name(gst_caps_get_structure(caps, 0), "video/x-raw") &&
                     ConversionOf(base).GetSettings().sourceFormat.empty();
    AddPool(query, raw ? gst_video_buffer_pool_new() : gst_buffer_pool_new(), caps, static_cast<guint>(size),
            raw);
  }
  gst_query_add_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr);
  return TRUE;
}

// Uses downstream's pool, or one of its own, with padded lines if downstream understands them.
gboolean DecideAllocation(GstBaseTransform* base, GstQuery* query) {
  GstCaps* caps = nullptr;
  GstVideoInfo info;
  gst_query_parse_allocation(query, &caps, nullptr);
  if (!caps || !gst_video_info_from_caps(&info, caps)) return FALSE;
  const bool videoMeta = gst_query_find_allocation_meta(query, GST_VIDEO_META_API_TYPE, nullptr);
  if (gst_query_get_n_allocation_pools(query) == 0)
    AddPool(query, gst_video_buffer_pool_new(), caps, static_cast<guint>(GST_VIDEO_INFO_SIZE(&info)),
            videoMeta);
  else if (videoMeta) {
    GstBufferPool* pool = nullptr;
    guint size = 0;
    guint least = 0;
    guint most = 0;
    gst_query_parse_nth_allocation_pool(query, 0, &pool, &size, &least, &most);
    if (pool && gst_buffer_pool_has_option(pool, GST_BUFFER_POOL_OPTION_VIDEO_META)) {
      GstStructure* config = gst_buffer_pool_get_config(pool);
      gst_buffer_pool_config_add_option(config, GST_BUFFER_POOL_OPTION_VIDEO_META);
      gst_buffer_pool_set_config(pool, config);
    }
    if (pool) gst_object_unref(pool);
  }
  return GST_BASE_TRANSFORM_CLASS(zr_convert_parent_class)->decide_allocation(base, query);
}

GstFlowReturn Transform(GstBaseTransform* base, GstBuffer* frame, GstBuffer* picture) {
  return Succeeds(base, [&] { ConversionOf(base).Convert(frame, picture); }) ? GST_FLOW_OK : GST_FLOW_ERROR;
}

void SetProperty(GObject* object, guint id, const GValue* value, GParamSpec* property) {
  Conversion& conversion = ConversionOf(object);
  zrgstreamer::Settings settings = conversion.GetSettings();
  if (!zrgstreamer::WriteProperty(settings, id, value))
    G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, property);
  conversion.SetSettings(settings);
  if (!zrgstreamer::IsLive(id)) gst_base_transform_reconfigure_sink(GST_BASE_TRANSFORM(object));
}

void GetProperty(GObject* object, guint id, GValue* value, GParamSpec* property) {
  if (!zrgstreamer::ReadProperty(ConversionOf(object).GetSettings(), id, value))
    G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, property);
}

void Finalize(GObject* object) {
  delete &ConversionOf(object);
  G_OBJECT_CLASS(zr_convert_parent_class)->finalize(object);
}

void zr_convert_init(ZrConvert* self) {
  self->conversion = new Conversion;
  gst_base_transform_set_qos_enabled(GST_BASE_TRANSFORM(self), TRUE);
}

void DescribeClass(GstElementClass* element) {
  gst_element_class_set_static_metadata(
      element, "Camera pixel format converter", "Filter/Converter/Video",
      "Converts the pixel formats of industrial cameras, packed and mosaic ones too, to raw video",
      "ZrConvertersLib developers");
  const CapsPointer sink = zrgstreamer::SinkCaps(true);
  const CapsPointer source = zrgstreamer::SourceCaps();
  gst_element_class_add_pad_template(element,
                                     gst_pad_template_new("sink", GST_PAD_SINK, GST_PAD_ALWAYS, sink.get()));
  gst_element_class_add_pad_template(element,
                                     gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, source.get()));
}

void zr_convert_class_init(ZrConvertClass* self) {
  GST_DEBUG_CATEGORY_INIT(zr_convert_debug, "zrconvert", 0, "camera pixel format converter");
  GObjectClass* object = G_OBJECT_CLASS(self);
  object->set_property = SetProperty;
  object->get_property = GetProperty;
  object->finalize = Finalize;
  zrgstreamer::InstallProperties(object);
  DescribeClass(GST_ELEMENT_CLASS(self));
  GstBaseTransformClass* transform = GST_BASE_TRANSFORM_CLASS(self);
  transform->transform_caps = TransformCaps;
  transform->fixate_caps = FixateCaps;
  transform->set_caps = SetCaps;
  transform->get_unit_size = GetUnitSize;
  transform->transform_size = TransformSize;
  transform->propose_allocation = ProposeAllocation;
  transform->decide_allocation = DecideAllocation;
  transform->transform = Transform;
}

}  // namespace

namespace zrgstreamer {

gboolean RegisterElement(GstPlugin* plugin) {
  return gst_element_register(plugin, "zrconvert", GST_RANK_NONE, zr_convert_get_type());
}

}  // namespace zrgstreamer
