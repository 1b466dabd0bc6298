#pragma once

#include <QFrame>

/// The frame of a grid: holds its view, a TcxGridDBTableView.
class TcxGrid : public QFrame
{
    Q_OBJECT
public:
    explicit TcxGrid(QWidget *parent = nullptr);
};
