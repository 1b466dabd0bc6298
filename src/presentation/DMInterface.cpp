#include "presentation/DMInterface.h"

#include "presentation/GlobalUnit.h"
#include "toolkit/Doors.h"

#include <QApplication>
#include <QFile>
#include <QFont>
#include <QPalette>
#include <QStyleFactory>

TInterfaceDM *InterfaceDM = nullptr;

// The resources of a static library come along only when asked for, and only outside of namespaces.
static void InitStyles()
{
    Q_INIT_RESOURCE(presentation);
}

namespace {

/// Warm paper and ink, with one accent; every pair of text and ground has a contrast of 7 or more, greyed text aside.
QPalette DesignPalette()
{
    const QColor ink(0x2b, 0x2f, 0x36);
    const QColor accent(0x8a, 0x3a, 0x1c);
    QPalette palette(QColor(0xf6, 0xf3, 0xee), QColor(0xf6, 0xf3, 0xee));
    palette.setColor(QPalette::WindowText, ink);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::AlternateBase, QColor(0xfa, 0xf7, 0xf2));
    palette.setColor(QPalette::Text, ink);
    palette.setColor(QPalette::Button, QColor(0xf6, 0xf3, 0xee));
    palette.setColor(QPalette::ButtonText, ink);
    palette.setColor(QPalette::ToolTipBase, QColor(0xff, 0xfb, 0xf0));
    palette.setColor(QPalette::ToolTipText, ink);
    palette.setColor(QPalette::PlaceholderText, QColor(0x6d, 0x72, 0x7a));
    palette.setColor(QPalette::Highlight, QColor(0xf3, 0xdf, 0xc4));
    palette.setColor(QPalette::HighlightedText, QColor(0x4a, 0x1c, 0x0c));
    palette.setColor(QPalette::Link, accent);
    palette.setColor(QPalette::Light, Qt::white);
    palette.setColor(QPalette::Midlight, QColor(0xec, 0xe7, 0xdf));
    palette.setColor(QPalette::Mid, QColor(0xcf, 0xc8, 0xbd));
    palette.setColor(QPalette::Dark, QColor(0xa8, 0xa0, 0x94));
    palette.setColor(QPalette::Shadow, QColor(0x6b, 0x64, 0x5a));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x9a, 0x95, 0x8c));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0xe4, 0xdf, 0xd7));
    return palette;
}

} // namespace

TInterfaceDM::TInterfaceDM(QObject *owner) : QObject(owner)
{
    setObjectName(QStringLiteral("InterfaceDM"));
}

void TInterfaceDM::DataModuleCreate()
{
    InitStyles();
    constexpr int baseFontSize = 10;
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(DesignPalette());
    QApplication::setFont(QFont(QStringLiteral("Segoe UI"), baseFontSize));
    QFile sheet(QStringLiteral(":/presentation/design.qss"));
    if (sheet.open(QIODevice::ReadOnly))
        qApp->setStyleSheet(QString::fromUtf8(sheet.readAll()));
    SystemColour = [](int code) { return Doors().systemColour(code); };
}
