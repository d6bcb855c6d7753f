#pragma once

#include "host/app/acrx_app.h"
#include "host/app/documents.h"
