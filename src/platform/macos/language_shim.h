#ifndef ULVAK_LANGUAGE_SHIM_H
#define ULVAK_LANGUAGE_SHIM_H

// The C interface between the program and language_shim.swift. Strings are NUL-terminated UTF-8; the receiver
// must copy them before the call returns.

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

// The outcome of a request. Both of the framework's error families have cases with the same names;
// `ulvakModelSessionFamily` is added to tell them apart.
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

// Called exactly once per request, on any thread, with the answer as JSON or an error text.
typedef void (*UlvakModelDone)(void* context, int32_t outcome, const char* text);

int32_t ulvakModelState(void);

// Starts a request and returns at once. Pass the result to `ulvakModelRelease` after `done` was called.
void* ulvakModelStart(const struct UlvakModelRequest* request, void* context, UlvakModelDone done);

// Makes the request end soon, with an error if it has not already ended.
void ulvakModelCancel(void* started);

void ulvakModelRelease(void* started);

#ifdef __cplusplus
}
#endif

#endif
