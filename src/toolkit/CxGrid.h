#pragma once

#include <QFrame>

class TcxGridDBTableView;

/// The frame of a grid: holds one view.
class TcxGrid : public QFrame
{
    Q_OBJECT
public:
    explicit TcxGrid(QWidget *parent = nullptr);

    /// The view inside; null before it is made.
    TcxGridDBTableView *View() const;
};
