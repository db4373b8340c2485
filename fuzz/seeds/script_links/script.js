// c
var a = "http:\/\/h\/\x61\u0062\u{63}", b = /["'\/]/g, c = `ftp://h/x`; /* d */ window.open('p', "w"); location.href = "q.html";
{"u":"\/files\/a.zip","v":"//cdn.example/x.js"}
