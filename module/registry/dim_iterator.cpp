#include "module/registry/dim_iterator.h"

// Not in the header, so that the library exports them: nothing in it uses them.

CDimNameIterator::CDimNameIterator() = default;

int CDimNameIterator::done() { return 1; }

void CDimNameIterator::step() {}

void CDimNameIterator::start() {}

const wchar_t* CDimNameIterator::getDimName() { return nullptr; }

CDimTypeNameIterator::CDimTypeNameIterator() = default;

int CDimTypeNameIterator::done() { return 1; }

void CDimTypeNameIterator::step() {}

void CDimTypeNameIterator::start() {}

const wchar_t* CDimTypeNameIterator::GetDimTypeName() { return nullptr; }
