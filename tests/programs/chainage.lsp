;|
  CHAIN  -  station marks along a polyline

  Asks for a polyline, the interval and the height of the text; draws a tick square to the line and
  a text K0+000 at every interval, and at the end of the line.  Sets back every variable it changes,
  also when the user breaks off.
|;
(defun c:chain (/ *error* vars old ent obj int hgt len sta pt der ang txt done)

  (defun *error* (msg)
    (if (not (wcmatch (strcase msg) "*CANCEL*,*QUIT*,*EXIT*"))
      (princ (strcat "\nCHAIN: " msg)))
    (mapcar 'setvar vars old)
    (command "_.UNDO" "_End")
    (princ))

  (defun station (d / k r)
    (setq k (fix (/ (+ d 1e-6) 1000.0))
          r (- d (* k 1000.0)))
    (strcat "K" (itoa k) "+"
            (substr "000" 1 (- 3 (strlen (itoa (fix (+ r 1e-6))))))
            (rtos r 2 (if (equal r (fix (+ r 1e-6)) 1e-4) 0 2))))

  (defun mark (d / a b)
    (setq pt  (vlax-curve-getPointAtDist obj d)
          der (vlax-curve-getFirstDeriv obj (vlax-curve-getParamAtDist obj d))
          ang (angle '(0 0 0) der)
          a   (polar pt (+ ang (/ pi 2)) hgt)
          b   (polar pt (- ang (/ pi 2)) hgt))
    (command "_.LINE" "_non" a "_non" b "")
    (setq txt (polar pt (+ ang (/ pi 2)) (* 1.5 hgt)))
    (if (and (> ang (/ pi 2)) (<= ang (* 1.5 pi)))
      (setq ang (- ang pi)))
    (entmake (list '(0 . "TEXT") '(8 . "STATION") (cons 10 txt) (cons 11 txt) (cons 40 hgt)
                   (cons 1 (station d)) (cons 50 ang) '(72 . 1) '(73 . 1))))

  (setq vars '("CMDECHO" "OSMODE" "CLAYER")
        old  (mapcar 'getvar vars))
  (setvar "CMDECHO" 0)
  (setvar "OSMODE" 0)
  (command "_.UNDO" "_Begin")
  (command "_.-LAYER" "_Make" "STATION" "_Color" "3" "" "")
  (if (and (setq ent (entsel "\nSelect polyline: "))
           (wcmatch (cdr (assoc 0 (entget (car ent)))) "*POLYLINE,LINE,ARC"))
    (progn
      (setq obj (car ent))
      (initget 6)
      (setq int (cond ((getdist "\nInterval <100>: ")) (100.0)))
      (initget 6)
      (setq hgt (cond ((getreal "\nText height <2.5>: ")) (2.5))
            len (vlax-curve-getDistAtParam obj (vlax-curve-getEndParam obj))
            sta 0.0)
      (while (< sta (- len 1e-6))
        (mark sta)
        (setq sta  (+ sta int)
              done (1+ (cond (done) (0)))))
      (mark len)
      (princ (strcat "\n" (itoa (1+ done)) " stations, length " (rtos len 2 3) ".")))
    (princ "\nNo polyline selected."))
  (command "_.UNDO" "_End")
  (mapcar 'setvar vars old)
  (princ))
