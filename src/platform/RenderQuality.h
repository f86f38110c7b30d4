#pragma once

#include "platform/graphics/Graphics.h"

// The smoothing and pixel offset modes that the application sets once at start-up and hands
// to every Graphics that draws the label or a preview.
struct RenderQuality {
    static inline gfx::SmoothingMode smoothing = gfx::SmoothingMode::AntiAlias;
    static inline gfx::PixelOffsetMode pixelOffset = gfx::PixelOffsetMode::HighQuality;

    // The label's drawing settings: bicubic pictures, antialiased glyphs, pixels as units,
    // and the application's smoothing and pixel offset.
    static void Apply(gfx::Graphics& graphics)
    {
        graphics.SetInterpolationMode(gfx::InterpolationMode::HighQualityBicubic);
        graphics.SetTextRenderingHint(3);
        graphics.SetSmoothingMode(smoothing);
        graphics.SetPixelOffsetMode(pixelOffset);
        graphics.SetPageUnit(gfx::Unit::Pixel);
    }
};
