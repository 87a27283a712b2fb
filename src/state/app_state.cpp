#include "state/app_state.h"

#include <chrono>

#include "config/text_codec.h"

namespace vx::core {

void StatusText::set(const std::string& text)
{
    {
        std::lock_guard<std::mutex> lock(mutex_);
        text_ = text;
        ticks_ = 0;
    }
    if (shown_)
        shown_(text);
}

std::string StatusText::get() const
{
    std::lock_guard<std::mutex> lock(mutex_);
    return text_;
}

bool StatusText::tick(int clearAfter)
{
    std::unique_lock<std::mutex> lock(mutex_);
    if (text_.empty())
        return false;
    if (++ticks_ < clearAfter)
        return false;
    lock.unlock();
    set(std::string());
    return true;
}

void PendingTasks::add(std::future<void> task)
{
    std::lock_guard<std::mutex> lock(mutex_);
    tasks_.push_back(std::move(task));
}

int PendingTasks::prune()
{
    std::lock_guard<std::mutex> lock(mutex_);
    std::erase_if(tasks_, [](std::future<void>& f) {
        return !f.valid() || f.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    });
    return static_cast<int>(tasks_.size());
}

int PendingTasks::size() const
{
    std::lock_guard<std::mutex> lock(mutex_);
    return static_cast<int>(tasks_.size());
}

void PendingTasks::waitAll()
{
    std::vector<std::future<void>> tasks;
    {
        std::lock_guard<std::mutex> lock(mutex_);
        tasks.swap(tasks_);
    }
    for (auto& t : tasks)
        if (t.valid())
            t.wait();
}

AppState& appState()
{
    static AppState state;
    return state;
}

std::string narrowPath(const std::filesystem::path& path)
{
    return config::utf8ToCp1251(path.string());
}

std::filesystem::path installPathOf(const std::string& utf8)
{
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

} // namespace vx::core
