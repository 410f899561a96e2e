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
 * Creation. Each function returns NULL when the host cannot create the array.
 * `ndim` 0 with `dims` NULL creates a 0 x 0 array; one dimension n creates n x 1.
 * Numeric arrays start as zeros, char arrays as NULs; cells and fields start empty.
 */
qvArray* qvCreateNumericArray(size_t ndim, const size_t* dims, qvClass cls,
                              qvComplexity complexity);
qvArray* qvCreateDoubleScalar(double value);
/* 1 x strlen char array, one qvChar per byte. */
qvArray* qvCreateString(const char* text);
qvArray* qvCreateCharArray(size_t ndim, const size_t* dims);
qvArray* qvCreateCellArray(size_t ndim, const size_t* dims);
/* Copies `fieldNames`. */
qvArray* qvCreateStructArray(size_t ndim, const size_t* dims, int fieldCount,
                             const char* const* fieldNames);

/*
 * Storing. Indices are linear, from 0, column-major. The array takes ownership of `value`; a NULL
 * value leaves the element empty. An unknown name or an index past the end stores nothing.
 */
void qvSetField(qvArray* structure, size_t index, const char* name, qvArray* value);
void qvSetCell(qvArray* cell, size_t index, qvArray* value);

/* Inspection. */
int qvGetClassCode(const qvArray* value); /* a qvClass code */
/* "double", "char", "cell", "struct" or "logical". */
const char* qvGetClassName(const qvArray* value);
/* double * or qvChar *, writable, column-major. */
void* qvGetData(const qvArray* value);
/* NUL-terminated block from qvMalloc, each qvChar narrowed to its low byte. Never NULL: exhausted
 * memory is a host error. */
char* qvArrayToString(const qvArray* value);
double qvGetNaN(void);

/* Memory. When a call ends, the host reclaims what the module has not freed. */
void* qvMalloc(size_t size); /* NULL when memory is exhausted */
void qvFree(void* block);    /* NULL is allowed */

#ifdef __cplusplus
}
#endif

#endif /* ZEPHRA_QV_H */
