#pragma once

#include <QSplitter>

/// A splitter whose thin line is easy to grab: it reacts to the mouse a few pixels beside it, too. Qt does the same
/// only for lines of one pixel.
class TSplitter : public QSplitter
{
    Q_OBJECT
public:
    using QSplitter::QSplitter;

protected:
    QSplitterHandle *createHandle() override;
};
