#include "toolkit/program/EachWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QFile>
#include <QRegularExpression>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace {

/// What each window binds beside the letters of its buttons: keys and names of actions.
const QMap<QString, QString> everyKey{
    {u"frmMain"_s,
     u"Ctrl++ acKeyZoomIn, Ctrl+- acKeyZoomOut, Ctrl+0 acZoomWhole, Ctrl+1 acKeyPali, Ctrl+2 acKeyViet, "
     "Ctrl+3 acKeyVietPali, Ctrl+= acKeyZoomIn, Ctrl+A acSelectAll, Ctrl+C acCopy, Ctrl+D acMarkSelection, "
     "Ctrl+F acFindDialog, Ctrl+F6 acFoot, Ctrl+L acReference, Ctrl+P acKeyPrint, Ctrl+PgDown acNextText, "
     "Ctrl+PgUp acPriorText, Ctrl+Q acKeyClose, Ctrl+S acKeySave, Ctrl+Shift+C acCopyReference, Ctrl+Shift+E "
     "acFindEverywhere, Ctrl+Shift+F acSearchSutas, Esc acLeaveFullScreen, F1 "
     "acKeyHelp, F11 acFullScreen, "
     "F2 acSearchSutas, F3 keyNextPlace, F6 acNextArea, Shift+F3 keyPriorPlace, Shift+F6 acPriorArea"_s},
    {u"frmDictionary"_s, u"Ctrl+W keyCloseWindow, F3 keyNextPlace, F6 acForms, Shift+F3 keyPriorPlace"_s},
    {u"frmSearchSutas"_s, u"Ctrl+W keyCloseWindow, F3 keyNextPlace, Shift+F3 keyPriorPlace"_s},
    {u"frmFocusHighlight"_s, u"Ctrl+W keyCloseWindow, F3 keyNextPlace, Shift+F3 keyPriorPlace"_s},
    {u"frmKeys"_s, u"Ctrl+W keyCloseWindow, Esc frmKeys"_s}};

QSet<QString> KeysOfWindow(const QString &window)
{
    QSet<QString> keys;
    for (const QString &bound : everyKey[window].split(u", "_s))
        keys.insert(bound.section(u' ', 0, 0));
    return keys;
}

/// The keys in a part of the guide's page of keys, or in all of it, as Qt writes them.
QSet<QString> KeysInGuide(const QString &language, const QString &part)
{
    QFile file(QCoreApplication::applicationDirPath() + u"/guide/"_s + language + u".html"_s);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QString guide = QString::fromUtf8(file.readAll());
    const qsizetype begin = guide.indexOf(part);
    EXPECT_GE(begin, 0) << part.toStdString();
    const qsizetype end = guide.indexOf(part.startsWith(u"<table"_s) ? u"</table>"_s : u"</div>"_s, begin);
    static const QRegularExpression chord(u"<kbd>[^<]*</kbd>(?:\\+<kbd>[^<]*</kbd>)*"_s);
    QSet<QString> keys;
    for (auto found = chord.globalMatch(guide.mid(begin, end - begin)); found.hasNext();)
        keys.insert(found.next()
                        .captured()
                        .remove(u"<kbd>"_s)
                        .remove(u"</kbd>"_s)
                        .replace(u"Page Up"_s, u"PgUp"_s)
                        .replace(u"Page Down"_s, u"PgDown"_s)
                        .replace(u"←"_s, u"Left"_s)
                        .replace(u"→"_s, u"Right"_s));
    return keys;
}

class WindowKeys : public EachWindow
{
protected:
    static QMap<QString, QStringList> KeysOf(const QWidget &visited)
    {
        QMap<QString, QStringList> keys;
        for (const QAction *action : visited.findChildren<QAction *>()) {
            for (const QKeySequence &key : action->shortcuts())
                keys[key.toString()].append(action->objectName());
        }
        for (const QShortcut *shortcut : visited.findChildren<QShortcut *>())
            keys[shortcut->key().toString()].append(shortcut->parent()->objectName());
        for (const QWidget *widget : Shown(visited)) {
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            if (button && !button->shortcut().isEmpty())
                keys[button->shortcut().toString()].append(button->objectName());
        }
        return keys;
    }
};

TEST_F(WindowKeys, AreEachBoundOnceAndThoseThatAreKnown)
{
    StartProgram();
    QSet<QString> seen;
    const auto visit = [&](QWidget &visited) {
        SCOPED_TRACE(visited.objectName().toStdString());
        const QMap<QString, QStringList> keys = KeysOf(visited);
        QStringList bound;
        for (auto key = keys.begin(); key != keys.end(); ++key) {
            EXPECT_EQ(key->size(), 1) << key.key().toStdString() << " of " << key->join(u' ').toStdString();
            if (!key.key().startsWith(u"Alt+"_s))
                bound.append(key.key() + u' ' + key->join(u' '));
        }
        if (everyKey.contains(visited.objectName())) {
            seen.insert(visited.objectName());
            EXPECT_EQ(bound.join(u", "_s).toStdString(), everyKey[visited.objectName()].toStdString());
        }
    };
    VisitAll(visit);
    VisitPreview(visit);
    EXPECT_EQ(seen.size(), everyKey.size());
}

TEST(GuideKeys, AreThoseOfTheWindowsInBothLanguages)
{
    const auto sorted = [](const QSet<QString> &keys) {
        QStringList list = keys.values();
        list.sort();
        return list.join(u", "_s).toStdString();
    };
    const QSet<QString> ofMain = KeysOfWindow(u"frmMain"_s) + QSet{u"Alt+Left"_s, u"Alt+Right"_s};
    for (const QString &language : {u"vi"_s, u"en"_s}) {
        EXPECT_EQ(sorted(KeysInGuide(language, u"<table class=\"frmMain\">"_s)), sorted(ofMain));
        const QSet<QString> all = KeysInGuide(language, u"<div class=\"keys\">"_s);
        for (const QString &window : everyKey.keys())
            EXPECT_EQ(sorted(KeysOfWindow(window) - all), "") << window.toStdString();
    }
}

} // namespace
