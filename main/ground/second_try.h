// A fault of the moment (an interrupted read, memory that ran out) must not look like damage: what matters is tried again.
#ifndef MAIN_SECOND_TRY_H
#define MAIN_SECOND_TRY_H

// True when one of two attempts was.
template <class Attempt>
[[nodiscard]] bool at_the_second_try(Attempt attempt) {
    const bool done = attempt();
    return done || attempt();
}

// True when two looks say so.
template <class Look>
[[nodiscard]] bool is_so(Look look) {
    return !at_the_second_try([&] { return !look(); });
}

#endif
