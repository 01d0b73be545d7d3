// Integer resources: sizes and limits that a configuration may set, each with the default of its user.
#ifndef TRELLIS_RESOURCE_H
#define TRELLIS_RESOURCE_H

// The value set for name, or byDefault.
int integerResource(const char* name, int byDefault);
void setIntegerResource(const char* name, int value);
void removeIntegerResource(const char* name);

#endif
