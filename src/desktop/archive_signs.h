#pragma once

#include <QIcon>

namespace quill::desktop {

/// The functions of the archive window's buttons, by number.
enum class ArchiveTool { open = 1, move, repack, leave, extract, test };

/// Returns the picture of a button of the archive window, in the text colour.
QIcon archive_tool_icon(ArchiveTool tool, const QColor& colour);

}  // namespace quill::desktop
