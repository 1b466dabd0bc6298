#include "toolkit/controls/CxPageControl.h"

#include <QShortcut>

void TcxTabSheet::SetCaption(const QString &caption)
{
    m_caption = caption;
    setAccessibleName(caption.trimmed());
    emit CaptionChanged();
}

TcxPageControl::TcxPageControl(QWidget *parent) : QTabWidget(parent)
{
    // Shortcuts, because some controls use these keys for their keyboard search.
    const auto turn = [this](QKeyCombination keys, int by) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, by] {
            if (count() > 0)
                setCurrentIndex((currentIndex() + by + count()) % count());
        });
    };
    turn(Qt::CTRL | Qt::Key_Tab, 1);
    turn(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, -1);
}

void TcxPageControl::AddSheet(TcxTabSheet *sheet)
{
    addTab(sheet, sheet->Caption());
    connect(sheet, &TcxTabSheet::CaptionChanged, this, [this, sheet] { setTabText(indexOf(sheet), sheet->Caption()); });
}
