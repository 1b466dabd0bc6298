#pragma once

#include <QSplitter>

/// A splitter whose line is thin to see and easy to take hold of: the mouse finds it some pixels beside it, too. The
/// toolkit does the same for lines of one pixel alone.
class TSplitter : public QSplitter
{
    Q_OBJECT
public:
    using QSplitter::QSplitter;

protected:
    QSplitterHandle *createHandle() override;
};
