// High-quality bicubic scaling of whole images.
#pragma once

#include <QImage>

namespace platform {

// A premultiplied image scaled to width x height with a separable bicubic convolution that filters
// first when it shrinks. Mirrored edges, so no border appears; at its own size an exact copy.
QImage ScaleBicubic(const QImage& source, int width, int height);

}  // namespace platform
