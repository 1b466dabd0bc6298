#include "BenchReader.h"
#include "Measures.h"
#include "Suites.h"

#include "presentation/languages/DKLang.h"
#include "presentation/languages/Published.h"
#include "reader/Main.h"
#include "search/SearchSutas.h"
#include "toolkit/bound/CxGridDBColumn.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/program/Forms.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTest>

#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr quint16 Vietnamese = 1066;
constexpr quint16 English = 1033;
constexpr int Settling = 50; ///< milliseconds in which what a switch has posted is done

using Setter = std::function<void(const QString &)>;

/// Qt's own setter of a text that the tables number.
Setter SetterOf(QObject *object, const QString &property)
{
    const auto bind = [](auto *target, auto set) {
        return target ? Setter([target, set](const QString &text) { (target->*set)(text); }) : Setter();
    };
    auto *widget = qobject_cast<QWidget *>(object);
    Setter setter;
    if (property == u"Caption") {
        for (Setter candidate : {bind(qobject_cast<QAction *>(object), &QAction::setText),
                                 bind(qobject_cast<QAbstractButton *>(object), &QAbstractButton::setText),
                                 bind(qobject_cast<QLabel *>(object), &QLabel::setText),
                                 bind(qobject_cast<QMenu *>(object), &QMenu::setTitle),
                                 bind(qobject_cast<TcxGridDBColumn *>(object), &TcxGridDBColumn::SetCaption),
                                 bind(widget, &QWidget::setWindowTitle)})
            if (!setter)
                setter = candidate;
    } else if (property == u"Hint") {
        setter =
            widget ? bind(widget, &QWidget::setToolTip) : bind(qobject_cast<QAction *>(object), &QAction::setToolTip);
    } else if (property == u"AccessibleName") {
        setter = bind(widget, &QWidget::setAccessibleName);
    } else if (property == u"TextHint") {
        setter = bind(qobject_cast<QLineEdit *>(object), &QLineEdit::setPlaceholderText);
    } else if (property == u"Lines") {
        setter = bind(qobject_cast<QPlainTextEdit *>(object), &QPlainTextEdit::setPlainText);
    }
    if (setter)
        return setter;
    // What has no setter of its own goes by its name.
    for (int i = 0; i < object->metaObject()->propertyCount(); ++i) {
        const QByteArray name = object->metaObject()->property(i).name();
        if (QString::fromLatin1(name).compare(property, Qt::CaseInsensitive) == 0)
            return [object, name](const QString &text) { object->setProperty(name.constData(), text); };
    }
    const QList<QByteArray> dynamicNames = object->dynamicPropertyNames();
    for (const QByteArray &name : dynamicNames)
        if (QString::fromLatin1(name).compare(property, Qt::CaseInsensitive) == 0)
            return [object, name](const QString &text) { object->setProperty(name.constData(), text); };
    qFatal("%s.%s has no setter", qUtf8Printable(object->objectName()), qUtf8Printable(property));
}

/// One numbered text and what it says in both languages.
struct Text
{
    QObject *object;
    QString property;
    Setter set;
    QString vietnamese, english;
};

/// Main window, search window and find dialog, open, and their texts.
class Windows
{
public:
    Windows() : m_reader(205, PlainPage(1000))
    {
        m_reader.Window().findChild<TBrowserControl *>(QStringLiteral("ebContent"))->ShowFindDialog();
        OpenForm(QStringLiteral("frmSearchSutas"), [this] { return new TfrmSearchSutas(m_reader.Window()); });
        const QWidgetList widgets = QApplication::allWidgets();
        for (QWidget *widget : widgets)
            if (auto *controller =
                    widget->findChild<TDKLanguageController *>(QStringLiteral("dkLang"), Qt::FindDirectChildrenOnly))
                Gather(controller->RootEntry());
        LangManager().SetCurrentLanguage(Vietnamese);
        for (Text &text : m_texts)
            text.vietnamese = FindPublished(text.object, text.property).Read();
        LangManager().SetCurrentLanguage(English);
        int changed = 0;
        for (Text &text : m_texts) {
            text.english = FindPublished(text.object, text.property).Read();
            changed += text.english != text.vietnamese ? 1 : 0;
        }
        LangManager().SetCurrentLanguage(Vietnamese);
        if (changed < 50)
            qFatal("only %d texts of %zu change with the language", changed, m_texts.size());
    }

    /// There and back by the manager, file and tables included.
    double SwitchTime()
    {
        return Time([] { LangManager().SetCurrentLanguage(English); },
                    [] { LangManager().SetCurrentLanguage(Vietnamese); });
    }
    /// The same texts set on the same components.
    double SetterTime()
    {
        return Time(
            [this] {
                for (const Text &text : m_texts)
                    text.set(text.english);
            },
            [this] {
                for (const Text &text : m_texts)
                    text.set(text.vietnamese);
            });
    }

private:
    void Gather(const TDKLang_CompEntry &entry)
    {
        if (entry.FPropEntries && entry.FComponent)
            for (const auto &property : *entry.FPropEntries)
                m_texts.push_back(
                    {entry.FComponent, property.wsPropName, SetterOf(entry.FComponent, property.wsPropName), {}, {}});
        if (entry.FOwnedCompEntries)
            for (const auto &owned : *entry.FOwnedCompEntries)
                Gather(*owned);
    }

    static double Time(const std::function<void()> &there, const std::function<void()> &back)
    {
        double time = 0;
        for (const auto &turn : {there, back}) {
            QTest::qWait(Settling);
            QElapsedTimer clock;
            clock.start();
            turn();
            time += static_cast<double>(clock.nsecsElapsed()) / 1e6;
        }
        return time;
    }

    BenchReader m_reader;
    std::vector<Text> m_texts;
};

} // namespace

void RegisterLanguageMeasures()
{
    const auto windows = std::make_shared<std::unique_ptr<Windows>>();
    const auto made = [windows]() -> Windows & {
        if (!*windows)
            *windows = std::make_unique<Windows>();
        return **windows;
    };
    Register({.name = QStringLiteral("language"),
              .unit = QStringLiteral("ms"),
              .reach = QStringLiteral("at most 2 x"),
              .ours = [made] { return made().SwitchTime(); },
              .floor = [made] { return made().SetterTime(); },
              .finish = [windows] { windows->reset(); },
              .repetitions = 31});
}
