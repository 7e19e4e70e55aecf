#include "bench/team.h"

#include <algorithm>
#include <sched.h>

namespace lumalane::bench {
namespace {

cpu_set_t allowed_processors() {
    cpu_set_t allowed;
    CPU_ZERO(&allowed);
    sched_getaffinity(0, sizeof allowed, &allowed);
    return allowed;
}

std::vector<int> numbers_of(const cpu_set_t &processors) {
    std::vector<int> numbers;
    for (int i = 0; i < CPU_SETSIZE; ++i)
        if (CPU_ISSET(i, &processors))
            numbers.push_back(i);
    return numbers;
}

constexpr int any_processor = -1;

void keep_to(int processor) {
    if (processor == any_processor)
        return;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(processor, &one);
    sched_setaffinity(0, sizeof one, &one);
}

} // namespace

void meeting::arrive_and_wait() {
    const unsigned number = number_;
    if (++here_ == members_) {
        here_ = 0;
        ++number_;
    }
    while (number_ == number)
        std::this_thread::yield();
}

team::team(int members) : allowed_(allowed_processors()), together_(members), seconds_(members) {
    const std::vector<int> all = numbers_of(allowed_);
    const auto processor_of = [&](int member) {
        return std::size_t(members) <= all.size() ? all[member] : any_processor;
    };
    for (int member = 1; member < members; ++member)
        others_.emplace_back(&team::run_member, this, member, processor_of(member));
    keep_to(processor_of(0));
}

team::~team() {
    works_ = nullptr;
    together_.arrive_and_wait();
    for (std::thread &other : others_)
        other.join();
    sched_setaffinity(0, sizeof allowed_, &allowed_);
}

double team::time(const std::vector<task> &works, long calls) {
    works_ = &works;
    calls_ = calls;
    together_.arrive_and_wait(); // what they have to do is known
    take_turn(0);
    return *std::max_element(seconds_.begin(), seconds_.end());
}

void team::take_turn(std::size_t member) {
    const auto run = [&](long times) {
        if (member < works_->size())
            for (long i = 0; i < times; ++i)
                (*works_)[member]();
    };
    run(untimed_calls);
    together_.arrive_and_wait();
    const double start = processor_seconds();
    run(calls_);
    seconds_[member] = processor_seconds() - start;
    together_.arrive_and_wait();
}

void team::run_member(std::size_t member, int processor) {
    keep_to(processor);
    for (together_.arrive_and_wait(); works_; together_.arrive_and_wait())
        take_turn(member);
}

task arithmetic_in_registers() {
    return [] {
        using vector = unsigned __attribute__((vector_size(16)));
        volatile unsigned seed = 1; // nothing is known of it when it is compiled
        // More of them than a processor begins in the time that one takes.
        vector a = vector{} + seed, b = a + 1, c = a + 2, d = a + 3, e = a + 4, f = a + 5,
               g = a + 6, h = a + 7;
        const vector step = a + 8;
        for (int i = 0; i < 1000; ++i) {
            a ^= a + step, b ^= b + step, c ^= c + step, d ^= d + step;
            e ^= e + step, f ^= f + step, g ^= g + step, h ^= h + step;
        }
        seed = (a ^ b ^ c ^ d ^ e ^ f ^ g ^ h)[0];
    };
}

} // namespace lumalane::bench
