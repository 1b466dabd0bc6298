#pragma once

#include <QTabWidget>

/// One page of a TcxPageControl. Its caption is the text of its tab, so that translating the page translates the tab.
class TcxTabSheet : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
public:
    explicit TcxTabSheet(QWidget *parent = nullptr) : QWidget(parent) {}

    const QString &Caption() const { return m_caption; }
    void SetCaption(const QString &caption);

signals:
    void CaptionChanged();

private:
    QString m_caption;
};

/// Pages with tabs. Ctrl+Tab and Ctrl+Shift+Tab switch them from anywhere in the window.
class TcxPageControl : public QTabWidget
{
    Q_OBJECT
public:
    explicit TcxPageControl(QWidget *parent = nullptr);

    /// Appends a page and owns it.
    void AddSheet(TcxTabSheet *sheet);
};
