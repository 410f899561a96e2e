/* Gives its argument back as a string; warns about "warn" and fails for "fail". */
#include <stddef.h>
#include <string.h>

#include "zephra/qv.h"
#include "zephra/qvx.h"

_Static_assert(qvClassCell == 1 && qvClassStruct == 2 && qvClassLogical == 3, "class codes");
_Static_assert(qvClassChar == 4 && qvClassDouble == 6, "class codes");
_Static_assert(qvReal == 0 && qvComplex == 1, "complexity codes");
_Static_assert(sizeof(qvChar) == 2, "an element of a char array has 16 bits");

void qvxFunction(int outputCount, qvArray* outputs[], int inputCount, const qvArray* inputs[]) {
    (void)outputCount;
    if (inputCount != 1) {
        qvxErrMsgIdAndTxt("ZEPHRA:echo:argumentCount", "%d arguments are given", inputCount);
    }
    char* text = qvArrayToString(inputs[0]);
    if (strcmp(text, "warn") == 0) {
        qvxWarnMsgIdAndTxt("ZEPHRA:echo:warned", "a %s is given", qvGetClassName(inputs[0]));
    }
    if (strcmp(text, "fail") == 0) {
        qvxErrMsgIdAndTxt("ZEPHRA:echo:failed", text);
    }
    outputs[0] = qvCreateString(text);
    qvFree(text);
}
