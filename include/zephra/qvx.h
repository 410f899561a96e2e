/* Entry point and messages of a ZEPHRA extension module. Plain C11, also valid C++. */
#ifndef ZEPHRA_QVX_H
#define ZEPHRA_QVX_H

#include "zephra/qv.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The entry point, exported by the module. `outputs[0]` may always be written, also when
 * `outputCount` is 0. */
void qvxFunction(int outputCount, qvArray* outputs[], int inputCount, const qvArray* inputs[]);

/*
 * Messages, provided by the host; both take a printf-style format.
 * The error function never returns: it throws a C++ exception of a type private to the host, which
 * unwinds through `qvxFunction`. No function in between may be noexcept or swallow it.
 */
void qvxErrMsgIdAndTxt(const char* identifier, const char* format, ...);
void qvxWarnMsgIdAndTxt(const char* identifier, const char* format, ...);

#ifdef __cplusplus
}
#endif

#endif /* ZEPHRA_QVX_H */
