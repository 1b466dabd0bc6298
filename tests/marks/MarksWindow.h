#pragma once

#include "reader/ReaderWindow.h"

class TfrmFocusEdit;

/// The reader's window with a client database of its own, as delivered, beside the program.
class MarksWindow : public ReaderWindow
{
protected:
    ~MarksWindow() override;

    /// Starts on a text, with the client database open.
    void Open(int idVic = 1101, int interfaceLang = 0);
    /// Connects as a second copy of the program would.
    std::unique_ptr<TfrmClientsDM> AnotherCopy();
    /// A stored mark of another copy.
    static void AddMark(TfrmClientsDM &module, const QString &title, const QByteArray &excerpt = "<p>viet</p>",
                        int number = 1101, int collection = 6);
    /// The stored marks as "key title", parted by "|"; a title's leading mark shows as "^".
    QString Stored();

    /// Runs the marking with all text of the page selected, and `inside` once its window is open; what that leaves open
    /// is closed by its box. Returns when the command has ended.
    void MarkAll(const std::function<void(TfrmFocusEdit &)> &inside);
    /// Opens the browser of marks and waits for its excerpt.
    void OpenMarks();
    /// A control of the browser of marks.
    template <typename T>
    T &InMarks(const char *name)
    {
        return In<T>(*form, name);
    }
    QString WorkFile() const { return Beside(QStringLiteral("tmpfocus.html")); }
    TpFIBDataSet &Marks() { return clients->qryFocus; }
    QString Value(const char *field) { return Marks().FieldByName(QLatin1StringView(field)).AsString(); }

    QPointer<QWidget> form; ///< the browser of marks
};
