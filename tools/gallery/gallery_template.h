// The places of the samples: knobs, sliders, check boxes, buttons, plots.
#pragma once

#include <array>

#include "platform/dialog_template.h"

namespace gallery {

using platform::ControlKind;
using platform::DialogControl;
using platform::DialogFrame;
using platform::DialogTemplate;

inline constexpr auto kGalleryControls = std::to_array<DialogControl>({
    {2000, ControlKind::Custom, u"Bass", 7, 7, 85, 95, u"POTENTIOMETER"},
    {2001, ControlKind::Custom, u"Treble", 112, 7, 85, 95, u"POTENTIOMETER"},
    {2002, ControlKind::Custom, u"Widener", 217, 7, 85, 95, u"POTENTIOMETER"},
    {2003, ControlKind::Custom, u"Loudness", 322, 7, 85, 95, u"POTENTIOMETER"},
    {2004, ControlKind::Custom, u"Disabled", 427, 7, 85, 95, u"POTENTIOMETER"},
    {2005, ControlKind::Custom, u"A caption that is too long", 532, 7, 85, 95, u"POTENTIOMETER"},
    {2006, ControlKind::Custom, u"Gain", 7, 110, 259, 36, u"PNGSLIDER"},
    {2007, ControlKind::Custom, u"Gain", 271, 110, 259, 36, u"PNGSLIDER"},
    {2008, ControlKind::Custom, u"Gain", 7, 148, 259, 36, u"PNGSLIDER"},
    {2009, ControlKind::Custom, u"Gain", 271, 148, 259, 36, u"PNGSLIDER"},
    {2010, ControlKind::Custom, u"Gain", 7, 186, 259, 36, u"PNGSLIDER"},
    {2011, ControlKind::Custom, u"Frequency", 271, 186, 259, 36, u"PNGSLIDER"},
    {2012, ControlKind::Custom, u"Bandwidth", 7, 224, 259, 36, u"PNGSLIDER"},
    {2013, ControlKind::Custom, u"A caption of more words than there is room for", 271, 224, 259,
     36, u"PNGSLIDER"},
    {2014, ControlKind::CheckBox, u"Peaking", 530, 110, 107, 12},
    {2015, ControlKind::CheckBox, u"High Shelving", 530, 124, 107, 12},
    {2016, ControlKind::CheckBox, u"Low Shelving", 530, 138, 107, 12},
    {2017, ControlKind::CheckBox, u"High Pass", 530, 152, 107, 12},
    {2018, ControlKind::CheckBox, u"A caption too long for it", 530, 166, 107, 12},
    {2019, ControlKind::PushButton, u"", 530, 182, 55, 21},
    {2020, ControlKind::PushButton, u"", 530, 205, 55, 21},
    {2021, ControlKind::PushButton, u"", 530, 228, 55, 21},
    {2022, ControlKind::PushButton, u"", 530, 251, 55, 21},
    {2023, ControlKind::PushButton, u"", 530, 274, 55, 21},
    {2024, ControlKind::PushButton, u"", 530, 297, 55, 21},
    {2025, ControlKind::Custom, u"", 7, 266, 489, 121, u"FREQPLOT"},
    {2026, ControlKind::Custom, u"", 7, 389, 489, 121, u"FREQPLOT"},
});

inline constexpr DialogTemplate kGalleryTemplate{
    1, DialogFrame::Skinned, 640, 512, u"", u"Microsoft Sans Serif", 8, kGalleryControls};

}  // namespace gallery
