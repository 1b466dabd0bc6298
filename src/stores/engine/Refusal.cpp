#include "stores/engine/Refusal.h"

#include "base/Messages.h"

#include <firebird/Interface.h>

using namespace Qt::StringLiterals;

namespace {

constexpr Message ChangedElsewhere{
    u"Ghi chép này vừa bị sửa hoặc xóa ở một cửa sổ Lumivara khác, nên chưa lưu gì cả. Hãy bấm \"Không lưu\", rồi bấm "
    "\"Đọc lại\" dưới danh sách để xem ghi chép như hiện có.",
    u"This mark was changed or deleted elsewhere, in another copy of Lumivara, so nothing was stored. Press \"Don't "
    "save\", then \"Read again\" (refresh) below the list, to see it as it is now."};
constexpr Message FileAway{
    u"Tệp \"%1\" đã bị đổi tên, thay thế hoặc xóa sau khi được mở, nên chưa lưu gì cả. Hãy đưa tệp trở lại chỗ cũ rồi "
    "lưu lại.",
    u"The file \"%1\" was renamed, replaced or deleted since it was opened, so nothing was stored. Put it back in its "
    "place and try again."};
constexpr Message KeyTwice{
    u"Có %1 ghi chép mang cùng một khóa với ghi chép này, và thay đổi sẽ vào tất cả, nên chưa lưu gì cả. Hãy bấm "
    "\"Không lưu\"; lệnh \"lumivara-data check\" nêu tên những ghi chép đó.",
    u"%1 records have the key of this one, and the change would go into all of them, so nothing was stored. Press "
    "\"Don't save\"; \"lumivara-data check\" names them."};
constexpr Message Unstorable{
    u"Một ô có ký tự mà tệp này không giữ được (chẳng hạn biểu tượng cảm xúc), nên chưa lưu gì cả. Hãy xóa ký tự đó "
    "rồi lưu lại.",
    u"A text holds a character that this file cannot keep (above U+FFFF, such as an emoji), so nothing was stored. "
    "Remove it and save again."};
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
constexpr Message TooLong{
    u"Một ô dài hơn mức tệp này chứa được, nên chưa lưu gì cả. Hãy rút ngắn rồi lưu lại.",
    u"A text is longer than this file can hold, so nothing was stored. Shorten it and save again."};
constexpr Message DiskFails{
    u"Không đọc hoặc ghi được tệp dữ liệu: đĩa đầy, bị rút ra, hoặc bị hỏng. Việc vừa rồi chưa được thực hiện. Hãy "
    "giải phóng chỗ trên đĩa hoặc nối lại đĩa, rồi thử lại.",
    u"The data file cannot be read or written: its disk is full, gone or damaged. What was asked for was not done. "
    "Make room on the disk or connect it again, and try again."};
constexpr Message Damaged{
    u"Tệp dữ liệu bị hỏng. Hãy đóng Lumivara, cất tệp đó đi, và lấy lại một bản sao lưu từ thư mục \"backup\" bằng "
    "\"lumivara-data restore\".",
    u"The data file is damaged. Close Lumivara, put the file aside, and get a backup back from the folder \"backup\" "
    "with \"lumivara-data restore\"."};

/// By Firebird's code.
constexpr std::pair<ISC_STATUS, const Message &> Known[] = {
    {isc_deadlock, Busy},
    {isc_lock_conflict, Busy},
    {isc_update_conflict, Busy},
    {isc_lock_timeout, Busy},
    {isc_no_dup, KeyTaken},
    {isc_unique_key_violation, KeyTaken},
    {isc_read_only_database, ReadOnly},
    {isc_arith_except, TooLong}, // or a string that it would cut
    {isc_string_truncation, TooLong},
    {isc_io_error, DiskFails},
    {isc_db_corrupt, Damaged},
    {isc_bad_db_format, Damaged},
    {isc_bug_check, Damaged},
};

const Message &MessageOf(Refusal::Reason reason)
{
    switch (reason) {
    case Refusal::Reason::ChangedElsewhere:
        return ChangedElsewhere;
    case Refusal::Reason::FileAway:
        return FileAway;
    case Refusal::Reason::KeyTwice:
        return KeyTwice;
    case Refusal::Reason::Unstorable:
        return Unstorable;
    case Refusal::Reason::FileReadOnly:
        break;
    }
    return FileReadOnly;
}

QString InEnglish(const Message &message)
{
    return QString::fromUtf16(message.english);
}

QString WithDetail(const QString &sentence, const QString &detail)
{
    return detail.isEmpty() ? sentence : sentence.arg(detail);
}

} // namespace

Refusal::Refusal(Reason reason, const QString &detail)
    : DatabaseError(WithDetail(InEnglish(MessageOf(reason)), detail)), m_reason(reason), m_detail(detail)
{}

QString Refusal::Sentence() const
{
    return WithDetail(TextOrEnglish(MessageOf(m_reason)), m_detail);
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
