#pragma once

#include <string>
#include <vector>

#include "demo/Story.h"

namespace Demo {

// The life of every terminal, from the cold start to the reboot into its backup partition.
// Nothing in it is waited for longer than `patience` seconds.
std::vector<Scene> LifeOfATerminal(double patience);

// What scenes on any terminal wait for.
constexpr char kArmed[] = "armed with 300 s";
Step Recovered();

// Carries out `disturb`, if any, and waits until the watchdog has been re-armed twice without a
// strike. A host that was held up for a heartbeat gets another chance. Returns "" or the surprise.
std::string AwaitNoStrike(Terminal* terminal, double patience,
                          const Scene::Action& disturb = nullptr);

}  // namespace Demo
