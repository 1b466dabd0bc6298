#include "stores/engine/Refusal.h"

#include "base/Messages.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Message ChangedElsewhere{
    u"Ghi chép này vừa bị sửa hoặc xóa ở một cửa sổ Lumivara khác, nên chưa lưu gì cả. Hãy bấm \"Không lưu\", rồi bấm "
    "\"Đọc lại\" dưới danh sách để xem ghi chép như hiện có.",
    u"This mark was changed or deleted elsewhere, in another copy of Lumivara, so nothing was stored. Press \"Don't "
    u"save\", "
    "then \"Read again\" (refresh) below the list, to see it as it is now."};
constexpr Message FileAway{
    u"Tệp \"%1\" đã bị đổi tên, thay thế hoặc xóa sau khi được mở, nên chưa lưu gì cả. Hãy đưa tệp trở lại chỗ cũ rồi "
    "lưu lại.",
    u"The file \"%1\" was renamed, replaced or deleted since it was opened, so nothing was stored. Put it back in its "
    "place and try again."};
constexpr Message FileReadOnly{
    u"Tệp \"%1\" không còn cho ghi, nên chưa lưu gì cả. Hãy cho phép ghi vào tệp rồi lưu lại.",
    u"The file \"%1\" may no longer be written, so nothing was stored. Allow writing to it and try again."};

constexpr Message Busy{
    u"Một cửa sổ Lumivara khác hoặc một công cụ đang ghi chính mục này, nên chưa lưu gì cả. Hãy đợi một lát "
    "rồi lưu lại; nếu vẫn không được, hãy bấm \"Không lưu\", rồi \"Đọc lại\" dưới danh sách.",
    u"Another copy of Lumivara or a tool is writing this very entry, so nothing was stored. Wait a "
    "moment and try again; if that does not help, press \"Don't save\", then \"Read again\" (refresh) below the list."};
constexpr Message KeyTaken{
    u"Một cửa sổ Lumivara khác vừa lưu một mục cùng lúc, nên chưa lưu gì cả. Hãy lưu lại lần nữa.",
    u"Another copy of Lumivara stored an entry at the same time, so nothing was stored. Save once more."};
constexpr Message ReadOnly{
    u"Tệp dữ liệu chỉ cho đọc, nên chưa lưu gì cả. Hãy cho phép ghi vào tệp rồi mở lại Lumivara.",
    u"The data file can only be read, so nothing was stored. Allow writing to it and start "
    "Lumivara again."};

/// By Firebird's code.
constexpr std::pair<int, const Message &> Known[] = {
    {335544336, Busy},     // deadlock
    {335544345, Busy},     // lock conflict
    {335544451, Busy},     // update conflict
    {335544349, KeyTaken}, // duplicate in a unique index
    {335544665, KeyTaken}, // key violation
    {335544765, ReadOnly}, // read-only database
};

const Message &MessageOf(Refusal::Reason reason)
{
    switch (reason) {
    case Refusal::Reason::ChangedElsewhere:
        return ChangedElsewhere;
    case Refusal::Reason::FileAway:
        return FileAway;
    case Refusal::Reason::FileReadOnly:
        break;
    }
    return FileReadOnly;
}

QString InEnglish(const Message &message)
{
    return QString::fromUtf16(message.english);
}

QString WithFile(const QString &sentence, const QString &file)
{
    return file.isEmpty() ? sentence : sentence.arg(file);
}

} // namespace

Refusal::Refusal(Reason reason, const QString &file)
    : DatabaseError(WithFile(InEnglish(MessageOf(reason)), file)), m_reason(reason), m_file(file)
{}

QString Refusal::Sentence() const
{
    return WithFile(TextOrEnglish(MessageOf(m_reason)), m_file);
}

QString ExplainedFailure(const DatabaseError &error)
{
    if (const auto *refusal = dynamic_cast<const Refusal *>(&error))
        return refusal->Sentence();
    for (const auto &[code, message] : Known) {
        if (code == error.EngineCode())
            return TextOrEnglish(message) + u"\n\n"_s + error.Text();
    }
    return error.Text();
}
