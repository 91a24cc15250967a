#pragma once

#include "codec/attachment.h"

#include <QCache>
#include <QIcon>
#include <QString>

#include <cstddef>

namespace quill::desktop {

/// The small signs of a list. Each is looked up or drawn on first use, and kept: a list of many files has few types.
class Signs {
  public:
    /// Returns the sign of a verdict: a tick, or a warning.
    const QIcon& of_verdict(codec::Verdict verdict);

    /// Returns the icon of the type of the file called `name`: the desktop's icon `theme_name`, else our own sheet with
    /// the name's extension.
    const QIcon& of_type(const QString& theme_name, const QString& name);

    /// Counts the icons that were looked up or drawn.
    std::size_t made() const { return made_; }

  private:
    static constexpr int most = 128;  ///< kept at the same time: a drawn one takes 64 kB

    template <class Make>
    const QIcon& find(const QString& key, const Make& make);

    QCache<QString, QIcon> icons_{most};
    std::size_t made_ = 0;
};

/// Returns the program's own icon.
QIcon program_icon();

}  // namespace quill::desktop
