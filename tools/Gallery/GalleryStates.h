#pragma once

#include "Tallyfox/Engine/Store/UsageSnapshot.h"

#include <QString>

#include <vector>

namespace tallyfox::gallery {

/// A situation to draw the views in.
struct GalleryState {
    QString name; ///< part of the picture's file name
    UsageSnapshot usage;
};

/// The situations that differ in what is drawn, the same in every run: no data, local history, a partial scan, a
/// quota with a weekly window, a stale quota, no permission, and figures and texts at their longest.
std::vector<GalleryState> galleryStates();

} // namespace tallyfox::gallery
