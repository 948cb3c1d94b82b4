// Where things lie in the response plot, and what a pointer over it means.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "dsp/plot_mapping.h"
#include "dsp/response.h"
#include "platform/geometry.h"

namespace ui {

// `scale` is the resolution in dots per inch divided by 96.
dsp::PlotMapping MakePlotMapping(platform::Size client, float scale);

// Curve and markers are cut off outside of it.
platform::Rect CurveClip(const dsp::PlotMapping& mapping);

// Top left corner of a marker's image.
platform::Point MarkerOrigin(const dsp::PlotMapping& mapping, const dsp::BandMarker& marker,
                             platform::Size image);

// Where a press takes hold of the marker: not quite where it is drawn, for its distance from the
// point on the curve does not grow with the resolution: at 96 DPI 3 pixels to the left and 1 below.
platform::Rect MarkerHitBox(const dsp::PlotMapping& mapping, const dsp::BandMarker& marker,
                            platform::Size image);

// The first band, counted from 1, whose marker is hit.
std::optional<std::int32_t> BandAt(const dsp::PlotMapping& mapping,
                                   std::span<const dsp::BandMarker> markers, platform::Size image,
                                   platform::Point pointer);

// The marker that belongs to a pointer which drags it, within what a band can have; nothing outside
// the area where dragging works. That area and the gains in it differ from the drawn ones: its
// upper and lower margins do not grow with the resolution, and it reaches from +21 to -21 dB.
// `windowScale` is the resolution of the window divided by 96.
std::optional<dsp::BandMarker> DraggedMarker(const dsp::PlotMapping& mapping,
                                             platform::Point pointer, double windowScale);

}  // namespace ui
