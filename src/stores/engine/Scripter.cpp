#include "stores/engine/Scripter.h"

#include "stores/engine/DatabaseHandles.h"
#include "stores/engine/SqlParameters.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

/// True for a comment, which is ignored between statements.
bool IsComment(const QString &script, qsizetype at)
{
    return QStringView(script).mid(at).startsWith("--"_L1) || QStringView(script).mid(at).startsWith("/*"_L1);
}

bool IsCommand(const QString &statement, const QString &pattern)
{
    const QRegularExpression command(QRegularExpression::anchoredPattern(pattern),
                                     QRegularExpression::CaseInsensitiveOption);
    return command.match(statement).hasMatch();
}

} // namespace

TpFIBScripter::TpFIBScripter(QObject *owner) : QObject(owner) {}

QStringList TpFIBScripter::SplitStatements(const QString &script)
{
    static const QRegularExpression setTerm(uR"(\A\s*set\s+term\s+(\S+)\s*\z)"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    QStringList statements;
    QString terminator = u";"_s;
    QString statement;
    const auto finish = [&] {
        statement = statement.trimmed();
        const QRegularExpressionMatch match = setTerm.match(statement);
        if (match.hasMatch())
            terminator = match.captured(1);
        else if (!statement.isEmpty())
            statements.append(statement);
        statement.clear();
    };
    for (qsizetype at = 0; at < script.size();) {
        const QStringView rest = QStringView(script).mid(at);
        if (rest.startsWith(terminator)) {
            const qsizetype length = terminator.size();
            finish();
            at += length;
            continue;
        }
        const qsizetype end = SkipOpaqueSql(script, at);
        if (end == at) {
            statement += script.at(at++);
            continue;
        }
        const bool between = statement.trimmed().isEmpty();
        if (!between || !IsComment(script, at))
            statement += rest.left(end - at);
        at = end;
    }
    finish();
    return statements;
}

void TpFIBScripter::ExecuteScript(int from)
{
    if (!m_database)
        throw DatabaseError(u"%1: no database is assigned"_s.arg(objectName()));
    const auto attachment = m_database->Attachment();
    EngineStatus *status = FirebirdClient::Instance().Status();
    TpFIBTransaction own;
    own.SetDefaultDatabase(m_database);
    const QStringList statements = SplitStatements(m_script.join(u'\n'));
    for (qsizetype i = std::max(from, 1) - 1; i < statements.size(); ++i) {
        const QString &statement = statements[i];
        // Commands of Firebird's tools, which Firebird itself would reject.
        if (IsCommand(statement, u"commit(\\s+work)?"_s)) {
            if (own.Active())
                own.Commit();
            continue;
        }
        if (IsCommand(statement, u"rollback(\\s+work)?"_s)) {
            own.SetActive(false);
            continue;
        }
        own.SetActive(true);
        const QByteArray text = statement.toUtf8();
        const Firebird::ITransaction *left = attachment->attachment->execute(
            status, own.Native()->transaction, static_cast<unsigned>(text.size()), text.constData(),
            static_cast<unsigned>(attachment->dialect), nullptr, nullptr, nullptr, nullptr);
        // A commit in another form than those above, such as one with a comment, reaches Firebird.
        if (!left)
            own.Native()->Ended();
    }
}
