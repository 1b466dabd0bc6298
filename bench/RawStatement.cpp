#include "RawStatement.h"

#include <firebird/Interface.h>

#include <QByteArray>

#include <cstring>
#include <dlfcn.h>
#include <stdexcept>
#include <vector>

using namespace Firebird;

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

struct RawStatement::Private
{
    /// Hands over each row until the visitor returns false.
    template <typename Visitor>
    void Walk(const QVariantList &parameters, Visitor visit)
    {
        Checked(master, [&](auto *status) {
            std::vector<unsigned char> in(input->getMessageLength(status) + 1);
            for (unsigned i = 0; i < input->getCount(status); ++i)
                Bind(in.data() + input->getOffset(status, i), input->getType(status, i) & ~1U,
                     parameters.value(static_cast<int>(i)));
            std::vector<unsigned char> out(output->getMessageLength(status));
            IResultSet *rows = statement->openCursor(status, transaction, input, in.data(), output, 0);
            while (rows->fetchNext(status, out.data()) == IStatus::RESULT_OK && visit(out.data())) {
            }
            rows->close(status);
            return 0;
        });
    }

    void Execute(const QVariantList &parameters)
    {
        Checked(master, [&](auto *status) {
            in.resize(input->getMessageLength(status));
            for (unsigned i = 0; i < input->getCount(status); ++i) {
                unsigned char *place = in.data() + input->getOffset(status, i);
                const unsigned type = input->getType(status, i) & ~1U;
                const QVariant &value = parameters[static_cast<int>(i)];
                if (type == SQL_BLOB) {
                    ISC_QUAD id;
                    const QByteArray bytes = value.toByteArray();
                    IBlob *blob = attachment->createBlob(status, transaction, &id, 0, nullptr);
                    blob->putSegment(status, static_cast<unsigned>(bytes.size()), bytes.constData());
                    blob->close(status);
                    std::memcpy(place, &id, sizeof id);
                } else {
                    Bind(place, type, value);
                }
            }
            statement->execute(status, transaction, input, in.data(), nullptr, nullptr);
            return 0;
        });
    }

    std::vector<unsigned char> in; ///< kept from run to run
    IMaster *master = nullptr;
    IAttachment *attachment = nullptr;
    ITransaction *transaction = nullptr;
    IStatement *statement = nullptr;
    IMessageMetadata *input = nullptr;
    IMessageMetadata *output = nullptr;

    static void Bind(unsigned char *place, unsigned type, const QVariant &value)
    {
        if (type == SQL_LONG) {
            const ISC_LONG number = value.toInt();
            std::memcpy(place, &number, sizeof number);
            return;
        }
        const QByteArray text = value.toString().toUtf8();
        const auto length = static_cast<ISC_USHORT>(text.size());
        std::memcpy(place, &length, sizeof length);
        std::memcpy(place + sizeof length, text.constData(), length);
    }
};

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
        // The isolation of the program's modules.
        const unsigned char isolation[] = {isc_tpb_version3, isc_tpb_write, isc_tpb_nowait, isc_tpb_read_committed,
                                           isc_tpb_rec_version};
        d->transaction = d->attachment->startTransaction(status, sizeof isolation, isolation);
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
    if (d->transaction)
        d->transaction->rollback(&status);
    d->attachment->detach(&status);
}

int RawStatement::Fetch(const QVariantList &parameters, int rows)
{
    int count = 0;
    d->Walk(parameters, [&](const unsigned char *) { return ++count != rows; });
    return count;
}

int RawStatement::FetchTo(const QVariantList &parameters, const QString &text)
{
    const QByteArray wanted = text.toUtf8();
    const unsigned place = Checked(d->master, [&](auto *status) { return d->output->getOffset(status, 0); });
    int count = 0;
    bool isFound = false;
    d->Walk(parameters, [&](const unsigned char *row) {
        ++count;
        ISC_USHORT length = 0;
        std::memcpy(&length, row + place, sizeof length);
        isFound = length == wanted.size() && std::memcmp(row + place + sizeof length, wanted.constData(), length) == 0;
        return !isFound;
    });
    return isFound ? count : 0;
}

qint64 RawStatement::ReadBlobs(const QVariantList &parameters)
{
    return Checked(d->master, [&](auto *status) {
        std::vector<unsigned char> segment(65535);
        const unsigned value = d->output->getOffset(status, 0);
        const unsigned null = d->output->getNullOffset(status, 0);
        qint64 bytes = 0;
        d->Walk(parameters, [&](const unsigned char *row) {
            short isNull = 0;
            std::memcpy(&isNull, row + null, sizeof isNull);
            if (isNull)
                return true;
            ISC_QUAD id;
            std::memcpy(&id, row + value, sizeof id);
            IBlob *blob = d->attachment->openBlob(status, d->transaction, &id, 0, nullptr);
            unsigned length = 0;
            while (blob->getSegment(status, static_cast<unsigned>(segment.size()), segment.data(), &length) !=
                   IStatus::RESULT_NO_DATA)
                bytes += length;
            blob->close(status);
            return true;
        });
        return bytes;
    });
}

void RawStatement::Execute(const QVariantList &parameters)
{
    d->Execute(parameters);
}

void RawStatement::Commit()
{
    Checked(d->master, [&](auto *status) {
        d->transaction->commit(status);
        d->transaction = nullptr;
        return 0;
    });
}
