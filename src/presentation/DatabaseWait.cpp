#include "presentation/DatabaseWait.h"

#include "base/Messages.h"
#include "toolkit/program/Guard.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QIODevice>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr Message title{u"Đang chờ dữ liệu", u"Waiting for a file"};
constexpr Message text{
    u"Tệp này không trả lời:\n%1\n\nCó lẽ một bản khác của chương trình đang giữ tệp và đã dừng lại. "
    u"Chờ tiếp, hay thoát khỏi chương trình?",
    u"This file does not answer:\n%1\n\nAnother copy of the program may hold it and have come to a "
    u"stop. Wait on, or leave the program?"};
constexpr Message waiting{u"&Chờ", u"&Wait"};
constexpr Message leaving{u"&Thoát", u"&Leave"};

} // namespace

bool WaitForDatabase(const QString &file, QIODevice &answers)
{
    QDialog dialog;
    dialog.setObjectName(QStringLiteral("frmDatabaseWait"));
    dialog.setWindowTitle(TextOrEnglish(title));
    auto *layout = new QVBoxLayout(&dialog);
    auto *label = new QLabel(TextOrEnglish(text).arg(QDir::toNativeSeparators(file)));
    label->setObjectName(QStringLiteral("lbDatabaseWait"));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    constexpr int comfortableWidth = 420;
    label->setMinimumWidth(comfortableWidth);
    layout->addWidget(label);
    auto *buttons = new QDialogButtonBox;
    auto *wait = buttons->addButton(TextOrEnglish(waiting), QDialogButtonBox::AcceptRole);
    wait->setObjectName(QStringLiteral("btnWait"));
    wait->setDefault(true);
    auto *leave = buttons->addButton(TextOrEnglish(leaving), QDialogButtonBox::DestructiveRole);
    leave->setObjectName(QStringLiteral("btnLeave"));
    layout->addWidget(buttons);
    bool leaves = false;
    ConnectGuarded(wait, &QPushButton::clicked, &dialog, [&dialog] { dialog.accept(); });
    ConnectGuarded(leave, &QPushButton::clicked, &dialog, [&dialog, &leaves] {
        leaves = true;
        dialog.accept();
    });
    ConnectGuarded(&answers, &QIODevice::readyRead, &dialog, [&dialog] { dialog.accept(); });
    ConnectGuarded(&answers, &QIODevice::readChannelFinished, &dialog, [&dialog] { dialog.accept(); });
    dialog.exec(); // Escape and the window's own button wait on
    return !leaves;
}
