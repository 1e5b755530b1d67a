#include "history/batchqueue.h"

#include <algorithm>
#include <utility>

void BatchQueue::add(Picture picture) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_entries.push_back({std::move(picture), false, {}});
}

BatchQueue::Entry *BatchQueue::beginNext(Picture *picture) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto next =
        std::find_if(m_entries.begin(), m_entries.end(), [](const Entry &entry) { return !entry.isTaken; });
    if (next == m_entries.end())
        return nullptr;
    next->isTaken = true;
    *picture = std::exchange(next->picture, {});
    return &*next;
}

bool BatchQueue::write(const Picture &picture) const {
    try {
        return m_writer(picture);
    } catch (...) {
        return false;
    }
}

void BatchQueue::writeNext() {
    Picture picture;
    Entry *entry = beginNext(&picture);
    if (!entry)
        return;
    const bool isWritten = write(picture);
    // Before the result is told: who waits for it hands in the next picture, and memory holds only so many.
    picture = {};
    const std::lock_guard<std::mutex> lock(m_mutex);
    entry->isWritten = isWritten;
}

std::optional<bool> BatchQueue::takeFirst() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_entries.empty() || !m_entries.front().isWritten)
        return {};
    const std::optional<bool> result = m_entries.front().isWritten;
    m_entries.pop_front();
    return result;
}
