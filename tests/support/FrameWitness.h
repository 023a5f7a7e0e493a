#pragma once

namespace KestryCore {

/// Counts how many of its kind exist, to show that frames of tasks are let go.
class FrameWitness {
public:
    explicit FrameWitness(int& count) : count_(count) { ++count_; }
    FrameWitness(const FrameWitness& other) : count_(other.count_) { ++count_; }
    FrameWitness& operator=(const FrameWitness&) = delete;
    ~FrameWitness() { --count_; }

private:
    int& count_;
};

} // namespace KestryCore
