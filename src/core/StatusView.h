#pragma once

#include <QString>

namespace Brindle {

/// The panels of the status bar, left to right.
namespace StatusPanel {
enum : int { Message, ListCount, ExportedCount, ProgressLabel };
}

/// Port: the status bar.
class StatusView {
public:
    virtual ~StatusView() = default;
    virtual void SetPanel(int panel, const QString& text) = 0;
    /// The progress bar counts from 0 to the maximum; a maximum of 0 or less stands for an unknown size.
    virtual void SetProgressMaximum(qint64 maximum) = 0;
    virtual void SetProgressPosition(qint64 position) = 0;
};

} // namespace Brindle
