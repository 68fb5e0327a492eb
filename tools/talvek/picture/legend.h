// What stands around the stone in a picture: the colour bar with its histogram, the scale bar and the caption.
#pragma once

#include <span>
#include <string>

#include "talvek/picture/image.h"
#include "talvek/results/change_scale.h"

namespace talvek::host {

/// The size of writing and lines, as a multiple of that in a picture of 1000 pixels.
double drawingSize(const Image& image);

/// Draws the colour bar into the upper left corner. `displacements` are those whose histogram stands beside it.
void drawColourBar(Image& image, const ChangeScale& scale, std::span<const double> displacements);

/// Draws a bar of a round length into the lower right corner.
void drawScaleBar(Image& image, double pixelsPerMillimetre);

/// Draws a line in bold and one below it into the lower left corner.
void drawCaption(Image& image, const std::string& title, const std::string& details);

}  // namespace talvek::host
