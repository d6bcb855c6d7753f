#pragma once

#include "host/app/acrx_app.h"
#include "host/app/documents.h"
#include "host/app/status_bar.h"
