#pragma once

#include "picture/bmp_header.h"

#include <QImage>

namespace quill::picture {

/// Draws the runs of a packed bitmap (RLE4, RLE8). Skipped pixels have the first color of the palette. Returns how many
/// rows are complete, from the first one in the file: all of them if the runs have an end mark.
int draw_runs(std::string_view data, const BmpHeader& header, QImage& image);

}  // namespace quill::picture
