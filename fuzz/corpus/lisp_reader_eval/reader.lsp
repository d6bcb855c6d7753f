; comment
;| block
   comment |; '(1 -2 +3 1.5 .5 -.5 5. 1e5 2147483648 1+ 1- . tail) "a\"\\\n\t\e\101\U+7BA1" 'x ''y ()
