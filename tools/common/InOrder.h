#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

/// Makes items on its own threads, ahead of the consumer, which takes them in order. The bytes of waiting items are
/// limited, so that large ones are not made far ahead.
template <typename Thing>
class InOrder
{
public:
    /// `make` is called with 0 to `count` - 1, by several threads at once; `bytesOf` is asked about each thing once.
    InOrder(size_t count, std::function<Thing(size_t)> make, std::function<size_t(const Thing &)> bytesOf)
        : m_count(count), m_make(std::move(make)), m_bytesOf(std::move(bytesOf))
    {
        for (int i = 0; i < Threads; ++i)
            m_threads.emplace_back([this] { Work(); });
    }

    ~InOrder()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_count = 0;
        }
        m_changed.notify_all();
        for (std::thread &thread : m_threads)
            thread.join();
    }
    InOrder(const InOrder &) = delete;
    InOrder &operator=(const InOrder &) = delete;

    /// The next item; `count` calls are allowed. Rethrows the exception of its making.
    Thing Take()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_slots.empty() && m_slots.front().isMade; });
        Slot slot = std::move(m_slots.front());
        m_slots.pop_front();
        ++m_taken;
        m_bytes -= slot.bytes;
        lock.unlock();
        m_changed.notify_all();
        if (slot.fault)
            std::rethrow_exception(slot.fault);
        return std::move(*slot.thing);
    }

private:
    /// The consumer works too, and common machines have few cores.
    static constexpr int Threads = 2;
    static constexpr size_t MostBytes = 16 * 1024 * 1024;

    struct Slot
    {
        std::optional<Thing> thing;
        std::exception_ptr fault;
        size_t bytes = 0;
        bool isMade = false;
    };

    void Work()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            // Items being made are not counted: each thread may make one, whatever is waiting.
            m_changed.wait(lock, [this] { return m_begun >= m_count || m_bytes < MostBytes || m_slots.empty(); });
            if (m_begun >= m_count)
                return;
            const size_t at = m_begun++;
            m_slots.emplace_back();
            lock.unlock();
            Slot slot;
            try {
                slot.thing = m_make(at);
                slot.bytes = m_bytesOf(*slot.thing);
            } catch (...) {
                slot.fault = std::current_exception();
            }
            slot.isMade = true;
            lock.lock();
            m_bytes += slot.bytes;
            m_slots[at - m_taken] = std::move(slot);
            m_changed.notify_all();
        }
    }

    std::mutex m_mutex; ///< over all that follows but the threads
    std::condition_variable m_changed;
    size_t m_count;
    size_t m_begun = 0;
    size_t m_taken = 0;
    size_t m_bytes = 0;       ///< of what waits
    std::deque<Slot> m_slots; ///< those begun and not taken
    std::function<Thing(size_t)> m_make;
    std::function<size_t(const Thing &)> m_bytesOf;
    std::vector<std::thread> m_threads;
};
