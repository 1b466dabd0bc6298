#include "fuzz/Fuzz.h"

#include "lumivara-data/sealed/Frames.h"

FUZZ_TARGET(Frames)
{
    // In two pieces, as a pipe gives them.
    FrameReader reader;
    reader.Append(input.left(input.size() / 3));
    for (int pieces = 0; pieces < 2; ++pieces) {
        try {
            while (const auto frame = reader.Next()) {
                FrameReader again;
                again.Append(frame->Encoded());
                const auto same = again.Next();
                REQUIRE(same && same->kind == frame->kind && same->values == frame->values);
            }
        } catch (const std::runtime_error &) {
            return; // what the sender's process is ended for
        }
        reader.Append(input.mid(input.size() / 3));
    }
}
