#include "toolkit/program/EachWindow.h"

#include "marks/FocusEdit.h"
#include "presentation/About.h"
#include "presentation/Options.h"
#include "toolkit/skin/SkinController.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QProcess>
#include <QTabWidget>
#include <QWebEnginePage>

using namespace Qt::StringLiterals;

namespace {

const PlatformDoors realDoors = Doors();

bool IsOf(const QWidget &widget, std::initializer_list<const char *> kinds)
{
    return std::any_of(kinds.begin(), kinds.end(), [&](const char *kind) { return widget.inherits(kind); });
}

/// Parts of other controls, and a memo behind the others.
bool IsInner(const QWidget &widget)
{
    for (const QWidget *above = widget.parentWidget(); !above->isWindow(); above = above->parentWidget()) {
        if (IsOf(*above, {"TBrowserControl", "QComboBox", "QTabBar"}))
            return true;
    }
    return IsOf(widget, {"QLineEditIconButton", "QScrollBar", "QHeaderView", "QSplitterHandle"}) ||
           (widget.objectName().startsWith(u"qt_"_s) && !widget.inherits("QTabBar")) ||
           widget.objectName() == u"mmTmp"_s;
}

} // namespace

std::string Name(const QWidget &widget)
{
    const QString name = widget.objectName();
    return (name.isEmpty() ? QString::fromLatin1(widget.metaObject()->className()) : name).toStdString();
}

QWidgetList Shown(const QWidget &window)
{
    QWidgetList shown;
    for (QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->window() == &window && widget->isVisible() && !IsInner(*widget))
            shown.append(widget);
    }
    return shown;
}

bool TakesInput(const QWidget &widget)
{
    return widget.focusPolicy() != Qt::NoFocus || qobject_cast<const QAbstractButton *>(&widget);
}

EachWindow::EachWindow()
{
    QFile skins(ProductFolder() + u"AllSkins.skinres"_s);
    EXPECT_TRUE(skins.open(QIODevice::ReadOnly));
    SetSkins(skins.readAll());
    AddEnglish();
    QFile::remove(Words());
    EXPECT_TRUE(QFile::copy(ProductFolder() + u"PALIDICT.FDB"_s, Words()));
}

EachWindow::~EachWindow()
{
    End();
    QFile::remove(Words());
    DictionaryKind = 0;
    TdxSkinController controller;
    controller.NativeStyle = true;
    controller.Refresh();
}

void EachWindow::StartProgram()
{
    Open();
    AddMark(*AnotherCopy(), u"giới"_s);
    Activate();
}

void EachWindow::VisitAll(const std::function<void(QWidget &)> &visit)
{
    // Of the passage that was marked in the round before: it would go with the first key in the page.
    Browser().page()->triggerAction(QWebEnginePage::Unselect);
    EXPECT_TRUE(WaitFor([this] { return !Action("acCopy").isEnabled(); }));
    visit(*window);
    for (const auto &[command, name] : {std::pair("acDictionary", u"frmDictionary"_s),
                                        {"acSearchSutas", u"frmSearchSutas"_s},
                                        {"acFindEverywhere", u"frmFindEverywhere"_s},
                                        {"acOrganization", u"frmFocusHighlight"_s},
                                        {"acImport", u"frmImport"_s},
                                        {"acWelcome", u"frmWelcome"_s},
                                        {"acKeys", u"frmKeys"_s}}) {
        Trigger(command);
        QWidget *opened = FindForm(name);
        ASSERT_TRUE(opened) << command;
        visit(*opened);
        opened->close();
        EXPECT_TRUE(WaitFor([&] { return !FindForm(name); }));
    }
    MarkAll([&](TfrmFocusEdit &editor) { visit(editor); });
    TfrmOptions options(window.get());
    options.show();
    visit(options);
    options.findChild<QTabWidget *>()->setCurrentIndex(1);
    visit(options);
    options.close();
    TfrmGioithieu about(window.get());
    about.show();
    EXPECT_TRUE(WaitFor([&] { return about.findChild<TBrowserControl *>()->IsComplete(); }));
    visit(about);
    about.close();
    QTimer::singleShot(0, qApp, [&] {
        QWidget *box = QApplication::activeModalWidget();
        visit(*box);
        box->close();
    });
    realDoors.messageBox(u"Lumivara"_s, u"?"_s, BoxButtons::YesNo, BoxIcon::None);
}

void EachWindow::VisitPreview(const std::function<void(QWidget &)> &visit)
{
    Trigger("acPrintPreview");
    QPointer<QDialog> preview;
    EXPECT_TRUE(WaitFor([&] { return preview = window->findChild<QDialog *>(u"frmPrintPreview"_s); }, 15000));
    ASSERT_TRUE(preview);
    visit(*preview);
    preview->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(preview);
}

void EachWindow::RunAgain(const QString &test, const QMap<QString, QString> &environment, const QStringList &command)
{
    QProcess again;
    QProcessEnvironment its = QProcessEnvironment::systemEnvironment();
    for (auto variable = environment.begin(); variable != environment.end(); ++variable)
        its.insert(variable.key(), variable.value());
    again.setProcessEnvironment(its);
    again.setProcessChannelMode(QProcess::ForwardedChannels);
    const QStringList line =
        command + QStringList{QCoreApplication::applicationFilePath(), u"--gtest_filter="_s + test};
    again.start(line.first(), line.mid(1));
    ASSERT_TRUE(WaitFor([&] { return again.state() == QProcess::NotRunning; }, 90000));
    EXPECT_EQ(again.exitCode(), 0) << again.errorString().toStdString();
}
