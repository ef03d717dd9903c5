#pragma once

#include <functional>

/** Runs a job once on a detached thread of its own. False, with the job not run, when no thread could be started. What the job
    holds is released on that thread. Any thread. */
bool launchWorker (std::function<void()> job);
