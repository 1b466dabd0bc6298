#include "strangers/StrangersFiles.h"

#include "stores/engine/BackupService.h"
#include "support/StoreSupport.h"

using namespace Qt::StringLiterals;

namespace {

QByteArray Made(const QString &script)
{
    const ScratchFolder folder;
    const QString path = folder.Path(u"STRANGER.FDB"_s);
    QFile::copy(EmptyDatabase(), path);
    OpenedDatabase(path).RunScript(script);
    return BytesOf(path);
}

} // namespace

QByteArray StrangersCanon(const QString &more)
{
    return Made(uR"(
create table KELORA_TREE (ID_VIT integer, P_ID_VIT integer, NAME_VIT_VIE varchar(127), NAME_VIT_PAL varchar(127),
NAME_VIT_ENG varchar(127));
create table KELORA_CONTENT (ID_VIT integer, ID_VIC integer, NUMBER_VIC integer, NAME_VIC_VIE varchar(127),
NAME_VIC_PAL varchar(127), NAME_VIC_ENG varchar(127), CONTENT_VIC_PAL blob, CONTENT_VIC_VIE blob, CONTENT_VIC_ENG blob,
CONTENT_VIC_PAL_VIE blob);
commit work;
insert into KELORA_TREE values (1, -1, 'Nhóm', 'Vagga', null);
insert into KELORA_CONTENT values (1, 1101, 1, 'Một', 'Eka', null,
'<html><head><meta charset="utf-8"></head><body>eka</body></html>', null, null, null);
insert into KELORA_CONTENT values (1, 1102, 2, 'Hai', 'Dve', null,
'<html><head><meta charset="utf-8"></head><body>dve</body></html>', null, null, null);
commit work;
)"_s + more);
}

QByteArray StrangersDictionary(const QString &more)
{
    return Made(uR"(
create table W (K integer, N varchar(63), C blob);
commit work;
insert into W values (5, 'anta', '- cuối');
insert into W values (5, 'āpa', '- nước');
commit work;
set term ^ ;
create procedure SP_GET_WORD_CONTENT (K integer, N varchar(63), M smallint)
returns (WORD_CONTENT blob, WORD_CONTENT_2 blob) as
begin select C from W where K = :K and N = :N into :WORD_CONTENT; suspend; end^
create procedure SP_CHECK_WORD (K integer, N varchar(63)) returns (RESULT smallint) as begin RESULT = 1; suspend; end^
create procedure SP_GET_LIST_WORDS (A_DICT integer) returns (WORD_NAME varchar(63), DICT_TYPE integer) as
begin for select N, K from W where K = :A_DICT into :WORD_NAME, :DICT_TYPE do suspend; end^
set term ; ^
commit work;
)"_s + more);
}

QByteArray StrangersMarks(const QString &more)
{
    return Made(uR"(
create table SUTTA_LIST (NIK_SUT integer, NIC_SUT integer, NAME_SUT_VIE varchar(127), NAME_SUT_PAL varchar(127),
NAME_SUT_ENG varchar(127), FAVOURITE_SUT smallint);
create table SUTTA_TEXT_FOCUS (ID_FOC integer, NAME_FOC varchar(127), TEXT_FOC blob, PRIORITY_FOC integer,
DESC_FOC varchar(2047), NIK_SUT integer, NIC_SUT integer, DATETIME_FOC timestamp, KEYWORD_FOC varchar(127));
commit work;
insert into SUTTA_LIST values (6, 1101, 'Một', 'Eka', null, null);
insert into SUTTA_TEXT_FOCUS values (1, 'ghi', '<p>chữ</p>', 2, null, 6, 1101, '2024-02-29 12:00:00.1234', 'a');
commit work;
)"_s + more);
}

QByteArray BackupOf(const QByteArray &database)
{
    const ScratchFolder folder;
    WriteFile(folder.Path(u"S.FDB"_s), database);
    BackupService(ProductFolder() + u"libfbclient.so.2"_s).Backup(folder.Path(u"S.FDB"_s), folder.Path(u"S.fbk"_s));
    return BytesOf(folder.Path(u"S.fbk"_s));
}
