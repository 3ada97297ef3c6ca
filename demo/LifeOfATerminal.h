#pragma once

#include <string>
#include <vector>

#include "demo/Story.h"

namespace Demo {

// The life of every terminal, from the cold start to the reboot into its backup partition. No step
// may take longer than `patience` seconds.
std::vector<Scene> LifeOfATerminal(double patience);

// Events for which scenes on any terminal wait.
constexpr char kArmed[] = "armed with 300 s";
Step Recovered();

// Carries out `disturb`, if any, and waits until the watchdog has been re-armed twice without a
// strike. Tries again after a strike, which may come from a stall of the host. Returns "" or what
// is wrong.
std::string AwaitNoStrike(Terminal* terminal, double patience,
                          const Scene::Action& disturb = nullptr);

}  // namespace Demo
