#pragma once

/// `boost::function` of up to two parameters, which is all that the library's interface uses.
/// <boost/function.hpp>, which defines it for ten, takes half as long again to compile. Code that
/// uses more parameters, or `boost::bind`, includes their headers itself.

#if __has_include(<boost/function/function2.hpp>)
#include <boost/function/function0.hpp>
#include <boost/function/function1.hpp>
#include <boost/function/function2.hpp>
#else
#include <boost/function.hpp>
#endif
