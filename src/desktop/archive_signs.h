#pragma once

#include <QIcon>

namespace quill::desktop {

/// What the buttons of the archive window do, by their numbers.
enum class ArchiveTool { open = 1, move, repack, leave, extract, test };

/// The picture of a button of the archive window, in the colour of texts.
QIcon archive_tool_icon(ArchiveTool tool, const QColor& colour);

}  // namespace quill::desktop
