#include "toolkit/controls/Splitter.h"

#include <QResizeEvent>

namespace {

constexpr int Grip = 2; ///< pixels on either side

class Handle : public QSplitterHandle
{
public:
    using QSplitterHandle::QSplitterHandle;

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        // Skips QSplitterHandle's handler, which would remove the margins and so resize again.
        const bool isUpright = orientation() == Qt::Horizontal;
        setContentsMargins(isUpright ? Grip : 0, isUpright ? 0 : Grip, isUpright ? Grip : 0, isUpright ? 0 : Grip);
        setAttribute(Qt::WA_MouseNoMask);
        setMask(contentsRect());
        QWidget::resizeEvent(event); // NOLINT(bugprone-parent-virtual-call): see above
    }
};

} // namespace

QSplitterHandle *TSplitter::createHandle()
{
    return new Handle(orientation(), this);
}
