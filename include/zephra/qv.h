/* Arrays and memory that a ZEPHRA host provides to its modules. Plain C11, also valid C++. */
#ifndef ZEPHRA_QV_H
#define ZEPHRA_QV_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Opaque host value. Every value belongs to the host; a module never frees one. */
typedef struct qvArray qvArray;

/* Class codes; an int at the ABI. */
typedef enum qvClass {
    qvClassCell = 1,
    qvClassStruct = 2,
    qvClassLogical = 3,
    qvClassChar = 4,
    qvClassDouble = 6
} qvClass;

typedef enum qvComplexity { qvReal = 0, qvComplex = 1 } qvComplexity;

/* One element of a char array. */
typedef uint16_t qvChar;

/*
 * Creation. Each function returns NULL when the host cannot make the array.
 * `ndim` 0 with `dims` NULL makes a 0 x 0 array; one dimension n makes n x 1.
 * A new numeric array is all zero, a new char array all NUL, and every cell and every field of a
 * new cell or structure array is empty.
 */
qvArray* qvCreateNumericArray(size_t ndim, const size_t* dims, qvClass cls,
                              qvComplexity complexity);
qvArray* qvCreateDoubleScalar(double value);
/* 1 x strlen char array, a byte to a qvChar. */
qvArray* qvCreateString(const char* text);
qvArray* qvCreateCharArray(size_t ndim, const size_t* dims);
qvArray* qvCreateCellArray(size_t ndim, const size_t* dims);
/* `fieldNames` are copied; the caller keeps its own. */
qvArray* qvCreateStructArray(size_t ndim, const size_t* dims, int fieldCount,
                             const char* const* fieldNames);

/*
 * Storing. Indices are linear, from 0, column-major. The array owns `value` from then on; a NULL
 * value leaves the place empty. An unknown name or an index past the end stores nothing.
 */
void qvSetField(qvArray* structure, size_t index, const char* name, qvArray* value);
void qvSetCell(qvArray* cell, size_t index, qvArray* value);

/* Inspection. */
int qvGetClassCode(const qvArray* value); /* a qvClass code */
/* "double", "char", "cell", "struct" or "logical". */
const char* qvGetClassName(const qvArray* value);
/* double * or qvChar *, writable, column-major. */
void* qvGetData(const qvArray* value);
/* NUL-terminated block from qvMalloc, each qvChar narrowed to its low byte. Never NULL: running
 * out of memory is a host error. */
char* qvArrayToString(const qvArray* value);
double qvGetNaN(void);

/* Memory. What a module has not freed when a call ends, the host reclaims. */
void* qvMalloc(size_t size); /* NULL when the host has none to give */
void qvFree(void* block);    /* NULL is allowed */

#ifdef __cplusplus
}
#endif

#endif /* ZEPHRA_QV_H */
