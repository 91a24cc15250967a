#pragma once

#include "codec/attachment.h"

#include <QIcon>
#include <QString>

namespace quill::desktop {

/// A small sign of a verdict: a tick, or a warning.
QIcon verdict_sign(codec::Verdict verdict);

/// The icon of the type of the file called `name`: the desktop's of that name, else a sheet of our own that bears its
/// extension.
QIcon type_icon(const QString& theme_name, const QString& name);

/// The program's own icon.
QIcon program_icon();

}  // namespace quill::desktop
