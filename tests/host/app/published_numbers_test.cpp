// Numbers that modules are compiled with and drawings and callers compare: they never change.
#include <gtest/gtest.h>

#include "host/app/acrx_app.h"
#include "host/db/resbuf.h"
#include "host/db/status.h"

namespace {

struct Row {
  int value;
  int number;
};

TEST(PublishedNumbers, OfStatuses) {
  constexpr Row kRows[] = {
      {Acad::eOk, 0},
      {Acad::eNotImplementedYet, 1},
      {Acad::eNotApplicable, 2},
      {Acad::eInvalidInput, 3},
      {Acad::eAmbiguousInput, 4},
      {Acad::eOutOfMemory, 6},
      {Acad::eBufferTooSmall, 7},
      {Acad::eInvalidOpenState, 8},
      {Acad::eHandleExists, 10},
      {Acad::eNullHandle, 11},
      {Acad::eBrokenHandle, 12},
      {Acad::eUnknownHandle, 13},
      {Acad::eNullObjectPointer, 15},
      {Acad::eNullObjectId, 16},
      {Acad::eContainerNotEmpty, 18},
      {Acad::eNullEntityPointer, 20},
      {Acad::eIllegalEntityType, 21},
      {Acad::eKeyNotFound, 22},
      {Acad::eDuplicateKey, 23},
      {Acad::eInvalidIndex, 24},
      {Acad::eAlreadyInDb, 26},
      {Acad::eInvalidKey, 33},
      {Acad::eWrongObjectType, 34},
      {Acad::eWrongDatabase, 35},
      {Acad::eObjectToBeDeleted, 36},
      {Acad::eNotOpenForRead, 44},
      {Acad::eNotOpenForWrite, 45},
      {Acad::eNotThatKindOfClass, 46},
      {Acad::eInvalidBlockName, 47},
      {Acad::eInvalidDxfCode, 50},
      {Acad::eInvalidResBuf, 51},
      {Acad::eBadDxfSequence, 52},
      {Acad::eFileNotFound, 76},
      {Acad::eWasErased, 80},
      {Acad::ePermanentlyErased, 81},
      {Acad::eWasOpenForRead, 82},
      {Acad::eWasOpenForWrite, 83},
      {Acad::eWasOpenForUndo, 84},
      {Acad::eWasNotifying, 85},
      {Acad::eWasOpenForNotify, 86},
      {Acad::eOnLockedLayer, 87},
      {Acad::eMustOpenThruOwner, 88},
      {Acad::eAtMaxReaders, 90},
      {Acad::eIsWriteProtected, 91},
      {Acad::eIsXRefObject, 92},
      {Acad::eNotAnEntity, 93},
      {Acad::eHadMultipleReaders, 94},
      {Acad::eDuplicateRecordName, 95},
      {Acad::eSelfReference, 97},
      {Acad::eCannotBeErasedByCaller, 105},
      {Acad::eWasNotErased, 107},
      {Acad::eNoDatabase, 124},
      {Acad::eXdataSizeExceeded, 125},
      {Acad::eIteratorDone, 129},
      {Acad::eNullIterator, 130},
      {Acad::eOwnerNotInDatabase, 132},
      {Acad::eCannotScaleNonUniformly, 136},
      {Acad::eNotInDatabase, 137},
      {Acad::eCannotChangeActiveViewport, 140},
      {Acad::eOutOfRange, 151},
      {Acad::eStringTooLong, 160},
      {Acad::eInvalidLayer, 173},
      {Acad::eLockViolation, 320},
      {Acad::eNoDocument, 330},
      {Acad::eNotInitializedYet, 374},
  };
  for (const Row& row : kRows) EXPECT_EQ(row.value, row.number);
}

TEST(PublishedNumbers, OfOpenModes) {
  EXPECT_EQ(int{AcDb::kForRead}, 0);
  EXPECT_EQ(int{AcDb::kForWrite}, 1);
  EXPECT_EQ(int{AcDb::kForNotify}, 2);
}

TEST(PublishedNumbers, OfBuffersAndResults) {
  constexpr Row kRows[] = {
      {RTNONE, 5000},   {RTREAL, 5001},   {RTPOINT, 5002}, {RTSHORT, 5003},   {RTANG, 5004},
      {RTSTR, 5005},    {RTENAME, 5006},  {RTPICKS, 5007}, {RTORINT, 5008},   {RT3DPOINT, 5009},
      {RTLONG, 5010},   {RTVOID, 5014},   {RTLB, 5016},    {RTLE, 5017},      {RTDOTE, 5018},
      {RTNIL, 5019},    {RTDXF0, 5020},   {RTT, 5021},     {RTRESBUF, 5023},  {RTMODELESS, 5027},
      {RTNORM, 5100},   {RTERROR, -5001}, {RTCAN, -5002},  {RTREJ, -5003},    {RTFAIL, -5004},
      {RTKWORD, -5005}, {RSRSLT, 1},      {RSERR, 3},      {AcRx::kRetOK, 0}, {AcRx::kRetError, 3},
  };
  for (const Row& row : kRows) EXPECT_EQ(row.value, row.number);
}

TEST(PublishedNumbers, OfMessages) {
  constexpr AcRx::AppMsgCode kInOrder[] = {
      AcRx::kNullMsg,         AcRx::kInitAppMsg,      AcRx::kUnloadAppMsg,   AcRx::kLoadDwgMsg,
      AcRx::kUnloadDwgMsg,    AcRx::kInvkSubrMsg,     AcRx::kCfgMsg,         AcRx::kEndMsg,
      AcRx::kQuitMsg,         AcRx::kSaveMsg,         AcRx::kDependencyMsg,  AcRx::kNoDependencyMsg,
      AcRx::kOleUnloadAppMsg, AcRx::kPreQuitMsg,      AcRx::kInitDialogMsg,  AcRx::kEndDialogMsg,
      AcRx::kSuspendMsg,      AcRx::kInitTabGroupMsg, AcRx::kEndTabGroupMsg,
  };
  int number = 0;
  for (const AcRx::AppMsgCode message : kInOrder) EXPECT_EQ(message, number++);
}

}  // namespace
