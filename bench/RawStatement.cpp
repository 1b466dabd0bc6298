#include "RawStatement.h"

#include <firebird/Interface.h>

#include <QByteArray>

#include <cstring>
#include <dlfcn.h>
#include <stdexcept>
#include <vector>

using namespace Firebird;

struct RawStatement::Private
{
    IMaster *master = nullptr;
    IAttachment *attachment = nullptr;
    ITransaction *transaction = nullptr;
    IStatement *statement = nullptr;
    IMessageMetadata *input = nullptr;
    IMessageMetadata *output = nullptr;
};

namespace {

// The wrapper throws FbException for every failed call.
template <typename Call>
auto Checked(IMaster *master, Call call)
{
    ThrowStatusWrapper status(master->getStatus());
    try {
        return call(&status);
    } catch (const FbException &error) {
        char text[512];
        master->getUtilInterface()->formatStatus(text, sizeof text, error.getStatus());
        throw std::runtime_error(text);
    }
}

} // namespace

RawStatement::RawStatement(const QString &clientLibrary, const QString &databasePath, const QString &sql)
    : d(std::make_unique<Private>())
{
    void *library = dlopen(clientLibrary.toUtf8().constData(), RTLD_NOW);
    auto *entry = library ? reinterpret_cast<IMaster *(*)()>(dlsym(library, "fb_get_master_interface")) : nullptr;
    if (!entry)
        throw std::runtime_error("no client library");
    d->master = entry();
    IXpbBuilder *parameters = Checked(d->master, [&](auto *status) {
        return d->master->getUtilInterface()->getXpbBuilder(status, IXpbBuilder::DPB, nullptr, 0);
    });
    Checked(d->master, [&](auto *status) {
        parameters->insertString(status, isc_dpb_lc_ctype, "UNICODE_FSS");
        parameters->insertString(status, isc_dpb_user_name, "SYSDBA");
        d->attachment = d->master->getDispatcher()->attachDatabase(status, databasePath.toUtf8().constData(),
                                                                   parameters->getBufferLength(status),
                                                                   parameters->getBuffer(status));
        parameters->dispose();
        d->transaction = d->attachment->startTransaction(status, 0, nullptr);
        d->statement = d->attachment->prepare(status, d->transaction, 0, sql.toUtf8().constData(), 3,
                                              IStatement::PREPARE_PREFETCH_METADATA);
        d->input = d->statement->getInputMetadata(status);
        d->output = d->statement->getOutputMetadata(status);
        return 0;
    });
}

RawStatement::~RawStatement()
{
    CheckStatusWrapper status(d->master->getStatus());
    d->statement->free(&status);
    d->transaction->rollback(&status);
    d->attachment->detach(&status);
}

int RawStatement::FetchWhole(const QString &parameter)
{
    return Checked(d->master, [&](auto *status) {
        std::vector<unsigned char> in(d->input->getMessageLength(status) + 1);
        if (d->input->getCount(status) > 0) {
            const QByteArray text = parameter.toUtf8();
            unsigned char *value = in.data() + d->input->getOffset(status, 0);
            const auto length = static_cast<ISC_USHORT>(text.size());
            std::memcpy(value, &length, sizeof length);
            std::memcpy(value + sizeof length, text.constData(), length);
        }
        std::vector<unsigned char> out(d->output->getMessageLength(status));
        IResultSet *rows = d->statement->openCursor(status, d->transaction, d->input, in.data(), d->output, 0);
        int count = 0;
        while (rows->fetchNext(status, out.data()) == IStatus::RESULT_OK)
            ++count;
        rows->close(status);
        return count;
    });
}

qint64 RawStatement::ReadBlobs()
{
    return Checked(d->master, [&](auto *status) {
        std::vector<unsigned char> out(d->output->getMessageLength(status));
        std::vector<unsigned char> segment(65535);
        const unsigned value = d->output->getOffset(status, 0);
        const unsigned null = d->output->getNullOffset(status, 0);
        IResultSet *rows = d->statement->openCursor(status, d->transaction, nullptr, nullptr, d->output, 0);
        qint64 bytes = 0;
        while (rows->fetchNext(status, out.data()) == IStatus::RESULT_OK) {
            short isNull = 0;
            std::memcpy(&isNull, out.data() + null, sizeof isNull);
            if (isNull)
                continue;
            ISC_QUAD id;
            std::memcpy(&id, out.data() + value, sizeof id);
            IBlob *blob = d->attachment->openBlob(status, d->transaction, &id, 0, nullptr);
            unsigned length = 0;
            while (blob->getSegment(status, static_cast<unsigned>(segment.size()), segment.data(), &length) !=
                   IStatus::RESULT_NO_DATA)
                bytes += length;
            blob->close(status);
        }
        rows->close(status);
        return bytes;
    });
}
