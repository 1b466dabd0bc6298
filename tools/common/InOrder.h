#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

/// Runs jobs on threads of its own and gives their results in the order in which the jobs came. The one who puts jobs
/// in asks HasRoom() first: each counts as the bytes that it or its result holds, until that is taken.
template <typename Result>
class InOrder
{
public:
    /// More threads than two would not pay: the one who takes has work of its own, and common machines have few cores.
    /// With one thread a job begins when the one before has ended.
    explicit InOrder(int threads = 2)
    {
        for (int i = 0; i < threads; ++i)
            m_threads.emplace_back([this] { Work(); });
    }

    /// Waits for the jobs that run; those that have not begun never do.
    ~InOrder()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isLeft = true;
        }
        m_changed.notify_all();
        for (std::thread &thread : m_threads)
            thread.join();
    }
    InOrder(const InOrder &) = delete;
    InOrder &operator=(const InOrder &) = delete;

    bool IsEmpty() const { return m_results.empty(); }
    /// For a job of so many bytes. Always true of an empty one, so that a single job may be of any size.
    bool HasRoom(size_t bytes = 0) const { return IsEmpty() || m_bytes + bytes < MostBytes; }

    void Put(size_t bytes, std::function<Result()> job)
    {
        std::packaged_task<Result()> task(std::move(job));
        m_results.push_back({task.get_future(), bytes});
        m_bytes += bytes;
        {
            const std::lock_guard lock(m_mutex);
            m_waiting.push_back(std::move(task));
        }
        m_changed.notify_one();
    }

    /// Waits for the oldest job, of which there must be one. Throws what that has thrown.
    Result Take()
    {
        Coming oldest = std::move(m_results.front());
        m_results.pop_front();
        m_bytes -= oldest.bytes;
        return oldest.result.get();
    }

private:
    static constexpr size_t MostBytes = 16 * 1024 * 1024;

    struct Coming
    {
        std::future<Result> result;
        size_t bytes;
    };

    void Work()
    {
        for (;;) {
            std::unique_lock lock(m_mutex);
            m_changed.wait(lock, [this] { return m_isLeft || !m_waiting.empty(); });
            if (m_isLeft)
                return;
            std::packaged_task<Result()> task = std::move(m_waiting.front());
            m_waiting.pop_front();
            lock.unlock();
            task();
        }
    }

    std::deque<Coming> m_results;
    size_t m_bytes = 0; ///< of the results
    std::vector<std::thread> m_threads;
    std::mutex m_mutex; ///< over what follows
    std::condition_variable m_changed;
    std::deque<std::packaged_task<Result()>> m_waiting;
    bool m_isLeft = false;
};
