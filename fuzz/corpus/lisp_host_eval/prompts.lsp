(initget 1 "Yes No") (getkword "go? [Yes/No]: ")
(getpoint "\np: ") (getdist '(0 0) "d") (getangle "a") (getint) (getreal) (getstring T "s") (entsel) (getcorner '(0 0))
(command "LINE" pause pause "")
---
Yes
1,2
5
45
7
1.5
a b
0,0
3,4
0,0
1,1
