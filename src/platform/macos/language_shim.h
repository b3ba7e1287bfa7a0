#ifndef ULVAK_LANGUAGE_SHIM_H
#define ULVAK_LANGUAGE_SHIM_H

// What the program and language_shim.swift say to each other: C, for it is what both speak. The texts are
// UTF-8 and end in a zero byte; whoever is given one copies it before the call returns.

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum UlvakModelState {
    ulvakModelAvailable = 0,
    ulvakModelDeviceNotEligible = 1,
    ulvakModelNotEnabled = 2,
    ulvakModelNotReady = 3,
    ulvakModelUnavailable = 4,
};

// What has become of a request. Both families of the framework's errors have cases of the same names; they
// are told apart by `ulvakModelSessionFamily`, which is added.
enum UlvakModelOutcome {
    ulvakModelAnswered = 0,
    ulvakModelGuardrailViolation = 1,
    ulvakModelRefusal = 2,
    ulvakModelUnsupportedLanguage = 3,
    ulvakModelOtherError = 4,
    ulvakModelSessionFamily = 16,
};

enum UlvakModelPropertyKind {
    ulvakModelText = 0,
    ulvakModelChoice = 1,
    ulvakModelInteger = 2,
};

struct UlvakModelProperty {
    const char* name;
    const char* description;  // null for none
    int32_t kind;
    int32_t choiceCount;
    const char* const* choices;
    int64_t least;
    int64_t most;
};

struct UlvakModelRequest {
    const char* instructions;
    const char* prompt;
    const char* answerName;
    const struct UlvakModelProperty* properties;
    int64_t propertyCount;
    double temperature;
};

// Called once for every request, from any thread: the answer as JSON, or what went wrong.
typedef void (*UlvakModelDone)(void* context, int32_t outcome, const char* text);

int32_t ulvakModelState(void);

// Starts a request and returns at once. The result is given back to `ulvakModelRelease` when `done` was
// called.
void* ulvakModelStart(const struct UlvakModelRequest* request, void* context, UlvakModelDone done);

// The request ends soon, by an error if it has not ended before.
void ulvakModelCancel(void* started);

void ulvakModelRelease(void* started);

#ifdef __cplusplus
}
#endif

#endif
