#pragma once

#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QString>

#include <vector>

namespace tallyfox::gallery {

/// One situation in which the views are drawn.
struct GalleryState {
    QString name; ///< part of the picture's file name
    UsageSnapshot usage;
};

/// The situations that look different, the same at every run: no data, local history, a partial scan, a
/// quota with a weekly window, a stale quota, no permission, and figures and texts as long as they get.
std::vector<GalleryState> galleryStates();

} // namespace tallyfox::gallery
