"""Other modules find the published operations of entry, registry and service in the library."""

import re
import subprocess
import sys
import unittest

LIBRARY = ""

PUBLISHED = """
acrxEntryPoint
acrxGetApiVersion
CDimIterator typeinfo
CDimNameIterator vtable
CDimNameIterator::CDimNameIterator()
CDimNameIterator::done()
CDimNameIterator::step()
CDimNameIterator::start()
CDimNameIterator::getDimName()
CDimTypeNameIterator vtable
CDimTypeNameIterator::CDimTypeNameIterator()
CDimTypeNameIterator::done()
CDimTypeNameIterator::step()
CDimTypeNameIterator::start()
CDimTypeNameIterator::GetDimTypeName()
CDimupateRegisiter vtable
CDimupateRegisiter::CDimupateRegisiter()
CDimupateRegisiter::~CDimupateRegisiter()
CDimupateRegisiter::Initialize(wchar_t const*)
CDimupateRegisiter::refresh()
CDimupateRegisiter::isRegisted(wchar_t const*) const
CDimupateRegisiter::isDimName(wchar_t const*) const
CDimupateRegisiter::regist(CString const&, CDimFacade*)
CDimupateRegisiter::getAt(CString const&) const
CDimupateRegisiter::logout(CString const&)
CDimUpdateServ vtable
CDimUpdateServ::m_instance
CDimUpdateServ::~CDimUpdateServ()
CDimUpdateServ::getInstance()
CDimUpdateServ::getDimRegServ()
CDimUpdateServ::getDimFactory()
CDimUpdateServ::getGcGpBzSz() const
CDimUpdateServ::getZdmGdBzSz() const
CDimUpdateServ::getPcBzSz() const
CDimUpdateServ::dumpDimRec(CDimRecord const&) const
""".strip().splitlines()

STRING = re.compile(r"std::(__cxx11::)?basic_string<wchar_t, std::char_traits<wchar_t>, "
                    r"std::allocator<wchar_t> ?>")


def exported():
    listing = subprocess.run(["nm", "-DC", "--defined-only", LIBRARY], capture_output=True,
                             text=True, check=True).stdout
    for line in listing.splitlines():
        name = STRING.sub("CString", line.split(maxsplit=2)[2])
        kind = re.match(r"(vtable|typeinfo) for (\w+)$", name)
        yield f"{kind[2]} {kind[1]}" if kind else name


class Exports(unittest.TestCase):

    def test_every_published_name_is_there(self):
        names = set(exported())
        self.assertEqual([name for name in PUBLISHED if name not in names], [])


if __name__ == "__main__":
    LIBRARY = sys.argv.pop(1)
    unittest.main()
