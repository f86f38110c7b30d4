#include "fields/CTextFileBase.h"

CTextFileBase::~CTextFileBase() = default;
