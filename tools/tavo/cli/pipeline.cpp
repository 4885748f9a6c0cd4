#include "cli/pipeline.hpp"

#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <mutex>
#include <thread>

namespace tool {

void InputCounter::add(std::size_t file, BlockReport const& block) {
    if (file != file_) endFile();
    file_ = file;
    if (block.invalidBytes != 0 && invalidBytes_ == 0) firstInvalidLine_ = lines_ + block.firstInvalidLine;
    invalidBytes_ += block.invalidBytes;
    if (otherEncoding_.empty()) otherEncoding_ = block.otherEncoding;
    if (block.longLines != 0 && report_.longLines == 0) {
        report_.firstLongFile = reader_.path(file);
        report_.firstLongLine = lines_ + block.firstLongLine;
    }
    report_.longLines += block.longLines;
    lines_ += block.lines;
}

void InputCounter::endFile() {
    if (!otherEncoding_.empty()) {
        report_.otherEncodings.push_back({reader_.path(file_), otherEncoding_});
    } else if (invalidBytes_ != 0) {
        if (report_.invalidBytes == 0) {
            report_.firstInvalidFile = reader_.path(file_);
            report_.firstInvalidLine = firstInvalidLine_;
        }
        report_.invalidBytes += invalidBytes_;
    }
    lines_ = invalidBytes_ = 0;
    otherEncoding_ = {};
}

namespace {

/// A block on its way; jobs are reused.
struct Job {
    std::size_t number = 0;
    Block block;
    OutBuffer out;
    BlockReport report;
};

/// The calling thread reads; each worker takes a block, analyses it, and hands on
/// whatever is next in order. All members below the mutex are guarded by it.
class Parallel {
public:
    Parallel(LineReader& reader, Sink const& sink, std::size_t threads)
        : reader_(reader), sink_(sink), counter_(reader), jobs_(2 * threads + 1) {
        for (Job& job : jobs_) free_.push_back(&job);
    }

    InputReport run(TAVO::Tavo const& prototype, OutputOptions const& options, std::size_t threads) {
        std::vector<std::thread> workers;
        try {
            for (std::size_t i = 0; i < threads; ++i)
                workers.emplace_back([&] { guarded([&] { work(prototype, options); }); });
            readAll();
        } catch (...) {
            fail(std::current_exception());
        }
        for (std::thread& worker : workers) worker.join();
        if (failure_) std::rethrow_exception(failure_);
        return counter_.report();
    }

private:
    template <class Body>
    void guarded(Body const& body) noexcept {
        try {
            body();
        } catch (...) {
            fail(std::current_exception());
        }
    }

    void fail(std::exception_ptr failure) noexcept {
        std::lock_guard const lock(mutex_);
        if (!failure_) failure_ = std::move(failure);
        changed_.notify_all();
    }

    void readAll() {
        for (std::size_t number = 0;; ++number) {
            Job* job = nullptr;
            {
                std::unique_lock lock(mutex_);
                changed_.wait(lock, [&] { return failure_ || !free_.empty(); });
                if (failure_) return;
                job = free_.front();
                free_.pop_front();
            }
            bool const more = reader_.next(job->block);
            std::lock_guard const lock(mutex_);
            if (more) {
                job->number = number;
                waiting_.push_back(job);
            } else {
                ended_ = true;
            }
            changed_.notify_all();
            if (!more) return;
        }
    }

    /// The next block to analyse; null when there will be none.
    Job* take() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return failure_ || ended_ || !waiting_.empty(); });
        if (failure_ || waiting_.empty()) return nullptr;
        Job* const job = waiting_.front();
        waiting_.pop_front();
        return job;
    }

    void work(TAVO::Tavo const& prototype, OutputOptions const& options) {
        BlockAnalyser analyser(prototype, options);
        while (Job* const job = take()) {
            job->out.clear();
            job->report = analyser.run(job->block.text(), job->out);
            handOn(job);
        }
    }

    void handOn(Job* finished) {
        std::lock_guard const lock(mutex_);
        done_.emplace(finished->number, finished);
        while (!done_.empty() && done_.begin()->first == nextOut_ && !failure_) {
            Job* const job = done_.begin()->second;
            done_.erase(done_.begin());
            sink_(job->out.view());
            ++nextOut_;  // not when the sink threw: nothing may follow what it did not take
            counter_.add(job->block.file, job->report);
            free_.push_back(job);
        }
        changed_.notify_all();
    }

    LineReader& reader_;
    Sink const& sink_;
    std::mutex mutex_;
    std::condition_variable changed_;
    InputCounter counter_;
    std::vector<Job> jobs_;
    std::deque<Job*> free_, waiting_;
    std::map<std::size_t, Job*> done_;
    std::size_t nextOut_ = 0;
    bool ended_ = false;
    std::exception_ptr failure_;
};

InputReport runAlone(LineReader& reader, BlockAnalyser& analyser, Sink const& sink) {
    InputCounter counter(reader);
    Block block;
    OutBuffer out;
    while (reader.next(block)) {
        out.clear();
        BlockReport const report = analyser.run(block.text(), out);
        sink(out.view());
        counter.add(block.file, report);
    }
    return counter.report();
}

}  // namespace

InputReport runPipeline(LineReader& reader, TAVO::Tavo const& prototype, OutputOptions const& options,
                        std::size_t threads, Sink const& sink) {
    if (threads > 1) return Parallel(reader, sink, threads).run(prototype, options, threads);
    BlockAnalyser analyser(prototype, options);
    return runAlone(reader, analyser, sink);
}

}  // namespace tool
